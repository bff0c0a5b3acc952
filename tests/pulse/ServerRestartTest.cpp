// The sound server killed and started again in the middle of a screen recording with the
// computer's sound and the microphone: the recording goes on, falling back to the computer's
// sound as when the microphone is pulled out; the routes are built again once the server is
// back, and its sound is recorded again; the file holds all of it and reads cleanly.
#include "AppDelegate.h"
#include "LogCapture.h"
#include "MediaProbe.h"
#include "SoundDeskTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTest>

namespace {

class ServerRestartTest : public SoundDeskTest {
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            GTEST_SKIP() << "needs the test desktop (scripts/test-desktop)";
        SoundDeskTest::SetUp();
    }
};

TEST_F(ServerRestartTest, ARecordingGoesOnThroughARestartAndTheRoutesComeBack)
{
    LogCapture log;
    DeskProgram program;
    const QString path = QDir(program.home.path()).filePath("restart.mp4");
    std::unique_ptr<AppDelegate> &app = program.app;
    TNRecordManager &manager = program.manager;
    FakeAlerts &alerts = program.alerts;
    manager.setRecordVideoType(VideoTypeCustomArea);
    QTest::qWait(700);
    const qsizetype inputs = app->inputDevicesCount();
    app->audioChangeAction(3); // the computer's sound and the microphone
    QTest::qWait(700);

    QElapsedTimer clock;
    clock.start();
    startPlainRegionRecording(*app, program.platform, QRect(0, 0, 320, 240), 25, path);
    QTest::qWait(2000);
    restartServer([&] {
        EXPECT_TRUE(waitFor([&] { return manager.recordAudioType() == AudioTypeSystem; }));
        EXPECT_EQ(app->audioItemIndex(), 1);
        QTest::qWait(1000);
        EXPECT_TRUE(manager.encodeManager().isWorking()); // the pictures go on
        EXPECT_TRUE(alerts.messages.isEmpty());
    });
    const QStringList lines = log.lines();
    EXPECT_FALSE(lines.filter("the sound server went away").isEmpty())
        << lines.join('\n').toStdString();

    // Back: the routes are built around the devices again, the computer's sound goes to them.
    EXPECT_TRUE(waitFor([&] {
        return modulesNamed("sink_name=MR-OutputDevice") == 1 &&
               modulesNamed("sink=MR-InputDevice") == 2;
    }));
    EXPECT_TRUE(waitFor([&] { return app->inputDevicesCount() == inputs; }));
    // The routes may be built more than once while the devices come back, one by one; a user
    // plays sound after that, not in the same moment.
    QTest::qWait(1500);
    EXPECT_TRUE(manager.encodeManager().isWorking());
    QProcess computer;
    playTone(computer, 440, 3, "MR-OutputDevice");
    QTest::qWait(2500);
    manager.stopRecording();
    const double seconds = clock.elapsed() / 1000.0;
    computer.waitForFinished(10000);
    app->applicationWillTerminate();
    EXPECT_EQ(modulesNamed("MR-"), 0);
    pactl({"set-default-sink", "builtin_out"});
    pactl({"set-default-source", "builtin_mic"});

    // Nothing written before the loss is lost, and the sound keeps pace with the pictures.
    const ProbedVideo video = MediaProbe::probeVideo(path);
    const ProbedAudio audio = MediaProbe::probeAudio(path);
    ASSERT_TRUE(video.ok && audio.ok) << path.toStdString();
    EXPECT_NEAR(video.duration, seconds, 1.0);
    EXPECT_NEAR(audio.duration, video.duration, 0.3);
    EXPECT_TRUE(MediaProbe::decodesCleanly(path));
    // The tone played after the restart is in the last two seconds.
    const std::vector<float> sound = MediaProbe::monoSamples(path);
    ASSERT_GT(sound.size(), size_t(audio.sampleRate) * 2);
    const std::vector<float> end(sound.end() - audio.sampleRate * 2, sound.end());
    EXPECT_GT(MediaProbe::toneAmplitude(end, audio.sampleRate, 440), 0.03);
}

} // namespace
