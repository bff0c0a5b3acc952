// A screen recording with the computer's sound, for a minute: sound and pictures end
// together, and a click played at the moment a window flashes is heard where the flash
// is seen, at the start as at the end.
#include "AppDelegate.h"
#include "ClickAndFlash.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "SoundDeskTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>

namespace {

constexpr int kFps = 25;

using clickandflash::click;
using clickandflash::clicks;
using clickandflash::flashes;
using clickandflash::FlashWindow;

class AvSyncTest : public SoundDeskTest {
protected:
    // Records the region of a flashing window for totalMs with the sound source `choice`
    // chosen settleMs before the start; at each of flashAtMs a click is played to the
    // computer's output as the window turns white.
    void record(int choice, int settleMs, const std::vector<int> &flashAtMs, int totalMs)
    {
        qputenv("XDG_CONFIG_HOME", home_.filePath(".config").toUtf8());
        LinuxPlatform platform;
        HomeMainWindow mainWindow;
        std::unique_ptr<AppDelegate> app = AppDelegate::create(platform.platform());
        app->setWindow(&mainWindow);
        TNRecordManager &manager = *app->recordManager();

        FlashWindow window;
        window.setFlags(Qt::Window | Qt::FramelessWindowHint);
        window.setGeometry(100, 100, 200, 200);
        window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, 5000));
        QProcess::execute("xdotool", {"windowmove", QString::number(window.winId()), "100", "100"});

        // The computer's sound goes to the output aggregate once its sound is chosen.
        manager.setRecordVideoType(VideoTypeCustomArea);
        QTest::qWait(700);
        app->audioChangeAction(choice);
        QProcess speaker;
        speaker.start("pacat", {"--raw", "--format=s16le", "--channels=2", "--rate=44100",
                                "--latency-msec=20", "--device=MR-OutputDevice"});
        ASSERT_TRUE(speaker.waitForStarted());
        QTest::qWait(settleMs);

        startPlainRegionRecording(*app, platform.platform(), QRect(100, 100, 200, 200), kFps,
                                  path_);
        QElapsedTimer clock;
        clock.start();
        for (int at : flashAtMs) {
            QTest::qWait(int(at - clock.elapsed()));
            speaker.write(click());
            window.setLit(true);
            moments_.push_back(int(clock.elapsed()));
            QTest::qWait(400);
            window.setLit(false);
        }
        QTest::qWait(int(totalMs - clock.elapsed()));
        manager.stopRecording();
        manager.captrueScreenInputEnable(false);
        speaker.closeWriteChannel();
        speaker.waitForFinished(5000);
        app->applicationWillTerminate();
        pactl({"set-default-sink", "builtin_out"});
        pactl({"set-default-source", "builtin_mic"});
    }

    // Sound and pictures end together, and each click is heard where its flash is seen.
    void expectInStep(double seconds)
    {
        const ProbedVideo video = MediaProbe::probeVideo(path_);
        const ProbedAudio audio = MediaProbe::probeAudio(path_);
        ASSERT_TRUE(video.ok && audio.ok) << path_.toStdString();
        EXPECT_NEAR(video.duration, seconds, 1.0);
        EXPECT_NEAR(audio.duration, video.duration, 0.1);

        const std::vector<double> seen = flashes(path_, video.width, video.height);
        const std::vector<double> heard = clicks(path_, audio.sampleRate);
        ASSERT_EQ(seen.size(), moments_.size());
        ASSERT_EQ(heard.size(), moments_.size());
        for (size_t i = 0; i < moments_.size(); ++i) {
            SCOPED_TRACE(moments_[i]);
            std::printf("played at %.3f s: seen at %.3f s, heard at %.3f s\n", moments_[i] / 1000.0,
                        seen[i], heard[i]);
            EXPECT_NEAR(seen[i], moments_[i] / 1000.0, 0.25); // where the test put it, roughly
            EXPECT_NEAR(heard[i], seen[i], 0.1);
        }
    }

    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            GTEST_SKIP() << "needs the test desktop (scripts/test-desktop)";
        SoundDeskTest::SetUp();
    }

    QTemporaryDir home_;
    QString path_ = QDir(home_.path()).filePath("sync.mp4");
    std::vector<int> moments_;
};

TEST_F(AvSyncTest, ClicksStayWithTheirFlashesOverAMinute)
{
    record(1, 700, {5000, 20000, 35000, 55000}, 60000);
    expectInStep(60.0);
}

// A route just built (computer and microphone together) takes a moment before its
// sound flows; the recording's sound must not start early for it.
TEST_F(AvSyncTest, ARouteChosenJustBeforeTheStartKeepsTheSoundInPlace)
{
    record(3, 0, {2500}, 4000);
    expectInStep(4.0);
}

} // namespace
