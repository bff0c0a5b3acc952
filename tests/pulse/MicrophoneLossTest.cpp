// The microphone taken away while the program records: a recording of the microphone
// alone stops, with the alert, and what was recorded stays; a recording that has the
// computer's sound too goes on with it. Either way the choice falls back to system sound.
#include "AppDelegate.h"
#include "Localization.h"
#include "MediaProbe.h"
#include "SoundDeskTest.h"

#include <QDir>
#include <QTest>

namespace {

class MicrophoneLossTest : public SoundDeskTest {};

TEST_F(MicrophoneLossTest, MicrophoneRecordingStopsOthersGoOnAndSystemSoundIsChosen)
{
    DeskProgram program;
    std::unique_ptr<AppDelegate> &app = program.app;
    TNRecordManager &manager = program.manager;
    FakeAlerts &alerts = program.alerts;
    manager.setRecordVideoType(VideoTypeAudioOnly);
    QTest::qWait(700);
    const qsizetype inputs = app->inputDevicesCount();

    struct Case {
        const char *file;
        int choice; // sound pop-up: 2 microphone, 3 both
        bool stops;
    };
    for (const Case c : {Case{"microphone.m4a", 2, true}, Case{"both.m4a", 3, false}}) {
        SCOPED_TRACE(c.file);
        alerts.messages.clear();
        app->audioChangeAction(c.choice);
        ASSERT_EQ(app->audioItemIndex(), c.choice);
        const QString path = QDir(program.home.path()).filePath(c.file);
        app->setOutputPath(path);
        QProcess voice;
        playTone(voice, 660, 6, "mic_feed");
        QTest::qWait(300);
        manager.startRecording();
        QTest::qWait(2000);
        unplugMicrophone();

        EXPECT_TRUE(waitFor([&] { return manager.recordAudioType() == AudioTypeSystem; }));
        EXPECT_EQ(app->audioItemIndex(), 1);
        EXPECT_EQ(serverDefault("Default Source"), "BlackHole2ch_UID.monitor");
        if (c.stops) {
            EXPECT_TRUE(waitFor([&] { return !manager.encodeManager().isWorking(); }));
            EXPECT_EQ(alerts.messages,
                      QStringList{Localization::localizedStringForKey("Alert_Mic_Message")});
        } else {
            QTest::qWait(1500);
            EXPECT_TRUE(manager.encodeManager().isWorking());
            EXPECT_TRUE(alerts.messages.isEmpty());
            manager.stopRecording();
        }
        voice.waitForFinished(10000);
        // What was recorded before the loss is all there.
        const ProbedAudio audio = MediaProbe::probeAudio(path);
        ASSERT_TRUE(audio.ok);
        EXPECT_GT(audio.duration, c.stops ? 1.8 : 2.5); // the switch itself may cost a moment
        EXPECT_TRUE(MediaProbe::decodesCleanly(path));
        // Plugged back in: the watch rebuilds the routes, whose new loopbacks take a good
        // second to keep time. A user records again after that, not in the same moment.
        plugMicrophoneBackIn();
        EXPECT_TRUE(waitFor([&] { return app->inputDevicesCount() == inputs; }));
        QTest::qWait(2000);
    }
    app->applicationWillTerminate();
    pactl({"set-default-sink", "builtin_out"});
    pactl({"set-default-source", "builtin_mic"});
}

} // namespace
