// The journal of a running recording and what a start makes of one left behind: every part of a
// split found, the readable ones entered as the stop would have, the unreadable left alone.
#include "RecordingJournal.h"
#include "FakePorts.h"
#include "RecordingList.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

void touch(const QString &path, const QByteArray &bytes = "data")
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

TEST(RecordingJournal, WrittenWholeAndReadBackOrNothing)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("recording.journal"));
    EXPECT_FALSE(RecordingJournal::read(path)) << "no journal";

    const RecordingJournal journal{
        QStringLiteral("/videos/20261125_101500.mp4"), true, QStringLiteral("2026/11/25 10:15:00"),
        QStringLiteral("alsa_input.mic"), QStringLiteral("alsa_output.speakers")};
    ASSERT_TRUE(journal.write(path));
    const std::optional<RecordingJournal> back = RecordingJournal::read(path);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->path, journal.path);
    EXPECT_TRUE(back->audioOnly);
    EXPECT_EQ(back->date, journal.date);
    EXPECT_EQ(back->defaultInputUID, journal.defaultInputUID);
    EXPECT_EQ(back->defaultOutputUID, journal.defaultOutputUID);

    // Half a journal (a disk that filled up) names nothing to recover.
    touch(path, "{\"path\": \"/vid");
    EXPECT_FALSE(RecordingJournal::read(path));
    EXPECT_FALSE(RecordingJournal{}.write(dir.filePath(QStringLiteral("no/such/dir/j"))));
}

TEST(RecordingJournal, PartsAreTheFileThenItsNumberedSplitsUntilOneIsMissing)
{
    QTemporaryDir dir;
    const QString first = dir.filePath(QStringLiteral("20261125_101500.mp4"));
    EXPECT_TRUE(recordingParts(first).isEmpty());
    for (const char *name :
         {"20261125_101500.mp4", "20261125_101500_2.mp4", "20261125_101500_3.mp4",
          "20261125_101500_5.mp4", "20261125_101500_2.mov"})
        touch(dir.filePath(QString::fromLatin1(name)));
    EXPECT_EQ(recordingParts(first),
              QStringList({first, dir.filePath(QStringLiteral("20261125_101500_2.mp4")),
                           dir.filePath(QStringLiteral("20261125_101500_3.mp4"))}));
}

TEST(RecordingJournal, ReadableFilesAreEnteredAndTheUnreadableLeftAlone)
{
    QTemporaryDir dir;
    const QString list = dir.filePath(QStringLiteral("filelist.plist"));
    const QString first = dir.filePath(QStringLiteral("a.mp4"));
    const QString second = dir.filePath(QStringLiteral("a_2.mp4"));
    const QString third = dir.filePath(QStringLiteral("a_3.mp4"));
    for (const QString &path : {first, second, third})
        touch(path);
    FakeMediaInspector media;
    media.files.insert(first, MediaFacts{3.0, 1'000'000});
    media.files.insert(third, MediaFacts{1.5, 400'000});
    const RecordingJournal journal{first, false, QStringLiteral("2026/11/25 10:15:00"), {}, {}};

    const RecoveredRecordings result = recoverRecordings(journal, media, list);
    EXPECT_EQ(result.entered, QStringList({first, third}));
    EXPECT_EQ(result.unreadable, QStringList{second});
    EXPECT_TRUE(QFile::exists(second)) << "never deleted";

    const RecordingList entered = RecordingList::read(list);
    ASSERT_EQ(entered.count(), 2);
    EXPECT_EQ(entered.pathAt(0), third) << "the last part on top, as a later recording";
    EXPECT_EQ(entered.pathAt(1), first);
    const QVariantMap record = entered.recordAt(1);
    EXPECT_DOUBLE_EQ(record.value(QStringLiteral("duration")).toDouble(), 3.0);
    EXPECT_DOUBLE_EQ(record.value(QStringLiteral("size")).toDouble(), 1'000'000);
    EXPECT_EQ(record.value(QStringLiteral("date")).toString(), journal.date);
    EXPECT_EQ(record.value(QStringLiteral("isVideo")).toInt(), 1);
}

} // namespace
