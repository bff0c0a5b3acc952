#include "RecordingJournal.h"

#include "Log.h"
#include "MediaInspector.h"
#include "RecordingList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace {

const QString kPath = QStringLiteral("path");
const QString kAudioOnly = QStringLiteral("audioOnly");
const QString kDate = QStringLiteral("date");
const QString kDefaultInput = QStringLiteral("defaultInputUID");
const QString kDefaultOutput = QStringLiteral("defaultOutputUID");

} // namespace

bool RecordingJournal::write(const QString &journalPath) const
{
    const QJsonObject object{{kPath, path},
                             {kAudioOnly, audioOnly},
                             {kDate, date},
                             {kDefaultInput, defaultInputUID},
                             {kDefaultOutput, defaultOutputUID}};
    QSaveFile file(journalPath);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(object).toJson()) < 0 ||
        !file.commit()) {
        capstan::NSLog(lcLibrary, "cannot write the recording journal %s",
                       qUtf8Printable(journalPath));
        return false;
    }
    return true;
}

std::optional<RecordingJournal> RecordingJournal::read(const QString &journalPath)
{
    QFile file(journalPath);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
    RecordingJournal journal;
    journal.path = object.value(kPath).toString();
    if (journal.path.isEmpty()) {
        capstan::NSLog(lcLibrary, "the recording journal %s names no file",
                       qUtf8Printable(journalPath));
        return std::nullopt;
    }
    journal.audioOnly = object.value(kAudioOnly).toBool();
    journal.date = object.value(kDate).toString();
    journal.defaultInputUID = object.value(kDefaultInput).toString();
    journal.defaultOutputUID = object.value(kDefaultOutput).toString();
    return journal;
}

QStringList recordingParts(const QString &path)
{
    QStringList parts;
    if (QFileInfo::exists(path))
        parts << path;
    const QFileInfo first(path);
    const QString stem = first.dir().filePath(first.completeBaseName());
    const QString suffix = first.suffix().isEmpty() ? QString() : QLatin1Char('.') + first.suffix();
    for (int index = 2;; ++index) {
        const QString part = QStringLiteral("%1_%2%3").arg(stem).arg(index).arg(suffix);
        if (!QFileInfo::exists(part))
            break;
        parts << part;
    }
    return parts;
}

RecoveredRecordings recoverRecordings(const RecordingJournal &journal, MediaInspector &media,
                                      const QString &plistPath)
{
    RecoveredRecordings result;
    for (const QString &part : recordingParts(journal.path)) {
        const std::optional<MediaFacts> facts = media.inspect(part);
        if (!facts) {
            capstan::NSLog(lcLibrary, "the recording %s cannot be read; it is left as it is",
                           qUtf8Printable(part));
            result.unreadable << part;
            continue;
        }
        addRecordToList(plistPath, RecordingRecord::movie(part, float(facts->durationSeconds),
                                                          float(facts->sizeBytes), journal.date,
                                                          journal.audioOnly));
        result.entered << part;
    }
    return result;
}
