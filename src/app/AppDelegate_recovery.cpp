// A recording survives the program: a journal beside the list while it runs, and at the next
// start the files of one cut short are read back, entered in the list and the user told once;
// the desktop's default sound devices go back to what they were before the program changed them.
#include "AppDelegate.h"

#include "Alerts.h"
#include "EZAudioDevice.h"
#include "Localization.h"
#include "Log.h"
#include "MediaInspector.h"
#include "RecordingJournal.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using capstan::NSLog;
using Localization::localizedStringForKey;

namespace {

std::optional<EZAudioDevice> deviceWithUID(const QList<EZAudioDevice> &devices, const QString &uid)
{
    for (const EZAudioDevice &device : devices)
        if (!uid.isEmpty() && device.UID() == uid)
            return device;
    return std::nullopt;
}

QString fileNames(const QStringList &paths)
{
    QStringList names;
    for (const QString &path : paths)
        names << QFileInfo(path).fileName();
    return names.join(QStringLiteral(", "));
}

} // namespace

QString AppDelegate::journalPath() const
{
    return QFileInfo(plistPath()).dir().filePath(QStringLiteral("recording.journal"));
}

void AppDelegate::rememberSystemDefaultDevices()
{
    // A journal left by a recording cut short knows the defaults from before that run.
    if (const std::optional<RecordingJournal> journal = RecordingJournal::read(journalPath())) {
        TNRecordManager &manager = *recordManager();
        AudioHardware &hw = *platform_.audio;
        if (const auto input =
                deviceWithUID(EZAudioDevice::inputDevices(hw), journal->defaultInputUID))
            manager.setSystemDefaultInput(*input);
        if (const auto output =
                deviceWithUID(EZAudioDevice::outputDevices(hw), journal->defaultOutputUID))
            manager.setSystemDefaultOutPut(*output);
    }
    systemDefaultInputUID_ = EZAudioDevice::currentInputDevice(*platform_.audio).UID();
    systemDefaultOutputUID_ = EZAudioDevice::currentOutputDevice(*platform_.audio).UID();
}

void AppDelegate::writeRecordingJournal()
{
    const RecordingJournal journal{outputPath(),
                                   recordManager()->recordVideoType() == VideoTypeAudioOnly,
                                   dateToString(QDateTime::currentDateTime()),
                                   systemDefaultInputUID_, systemDefaultOutputUID_};
    journal.write(journalPath());
}

void AppDelegate::removeRecordingJournal()
{
    QFile::remove(journalPath());
}

void AppDelegate::recoverInterruptedRecording()
{
    const std::optional<RecordingJournal> journal = RecordingJournal::read(journalPath());
    // Gone before anything is shown: the user is told once, whatever happens next.
    removeRecordingJournal();
    if (!journal || !platform_.media)
        return;
    NSLog(lcApp, "a recording to %s was cut short", qUtf8Printable(journal->path));
    const RecoveredRecordings result = recoverRecordings(*journal, *platform_.media, plistPath());
    QStringList message;
    if (!result.entered.isEmpty())
        message << localizedStringForKey(QStringLiteral("Alert_Recovered_Message"))
                       .arg(fileNames(result.entered));
    if (!result.unreadable.isEmpty())
        message << localizedStringForKey(QStringLiteral("Alert_RecoverFailed_Message"))
                       .arg(fileNames(result.unreadable));
    if (!message.isEmpty())
        platform_.alerts->showModleMessage(message.join(QStringLiteral("\n\n")),
                                           localizedStringForKey(QStringLiteral("Alert_Title")));
}
