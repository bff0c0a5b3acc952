// A recording cut short: the journal it keeps while it runs, and the next start that lists its
// files, tells the user once and gives the desktop its default sound devices back.
#include "MainWindowFixture.h"
#include "RecordingJournal.h"
#include "RecordingList.h"
#include "TNButton.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

using RecoveryTest = MainWindowFixture;

TEST_F(RecoveryTest, ARunningRecordingKeepsAJournalThatItsStopRemoves)
{
    app->fullScreenClicked(VideoTypeFullScreen);
    window.recordBtn->click();
    ASSERT_EQ(app->recordManager()->status(), quint64(RecordStatusRecording));
    const std::optional<RecordingJournal> journal = RecordingJournal::read(app->journalPath());
    ASSERT_TRUE(journal);
    EXPECT_EQ(journal->path, app->outputPath());
    EXPECT_FALSE(journal->audioOnly);
    window.recordBtn->click();
    EXPECT_FALSE(QFile::exists(app->journalPath()));
}

TEST(RecoveryAtStart, TheFilesAreListedTheUserToldOnceAndTheDefaultsRestored)
{
    Localization::installLanguage(QStringLiteral("en"));
    FakePlatform fake;
    fake.audio.devices = {
        FakeAudioHardware::device(10, "Built-in Microphone", "mic", {2}, {}),
        FakeAudioHardware::device(30, "Built-in Output", "speakers", {}, {2}),
        FakeAudioHardware::device(40, "MR-OutputDevice", "MR-OutputDevice", {}, {2}),
    };
    // The crash left the defaults on the program's own devices.
    fake.audio.defaultOutput = 40;
    fake.audio.defaultInput = 40;
    std::unique_ptr<AppDelegate> app = AppDelegate::create(fake.platform());
    const QString folder = fake.folders.movies + QStringLiteral("/Capstan");
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString first = folder + QStringLiteral("/20261125_101500.mp4");
    const QString second = folder + QStringLiteral("/20261125_101500_2.mp4");
    const QString broken = folder + QStringLiteral("/20261125_101500_3.mp4");
    for (const QString &path : {first, second, broken}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    fake.media.files.insert(first, MediaFacts{3.0, 2'000'000});
    fake.media.files.insert(second, MediaFacts{2.2, 1'500'000});
    ASSERT_TRUE(QDir().mkpath(QFileInfo(app->journalPath()).absolutePath()));
    ASSERT_TRUE((RecordingJournal{first, false, QStringLiteral("2026/11/25 10:15:00"),
                                  QStringLiteral("mic"), QStringLiteral("speakers")})
                    .write(app->journalPath()));

    FakeWorkspace workspace;
    HomeMainWindow window;
    app->setWorkspace(&workspace);
    app->setWindow(&window);
    EXPECT_EQ(fake.audio.defaultOutput, 30u);
    EXPECT_EQ(fake.audio.defaultInput, 10u);
    app->applicationDidFinishLaunching();
    QCoreApplication::processEvents();

    ASSERT_EQ(fake.alerts.messages.size(), 1);
    const QString message = fake.alerts.messages.first();
    EXPECT_TRUE(message.contains(QStringLiteral("20261125_101500.mp4"))) << message.toStdString();
    EXPECT_TRUE(message.contains(QStringLiteral("20261125_101500_2.mp4")));
    EXPECT_TRUE(message.contains(QStringLiteral("20261125_101500_3.mp4"))) << "the unreadable";
    const RecordingList list = RecordingList::read(app->plistPath());
    ASSERT_EQ(list.count(), 2);
    EXPECT_EQ(list.pathAt(1), first);
    EXPECT_TRUE(QFile::exists(broken));
    EXPECT_FALSE(QFile::exists(app->journalPath()));

    // Told once: a later start finds nothing to say.
    app->recoverInterruptedRecording();
    EXPECT_EQ(fake.alerts.messages.size(), 1);
    EXPECT_EQ(RecordingList::read(app->plistPath()).count(), 2);
}

} // namespace
