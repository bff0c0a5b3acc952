// Sound for real on the test desktop's PulseAudio server: the device catalog, the two
// aggregates and the defaults each recording type sets, recordings of a played tone,
// a device that vanishes mid-stream, and a program without a sound server.
#include "AppDelegate.h"
#include "EZAudioDevice.h"
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "PulseAudioCaptureInput.h"
#include "PulseAudioHardware.h"
#include "SoundDeskTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <mutex>

namespace {

class PulseAudioTest : public SoundDeskTest {};

TEST_F(PulseAudioTest, CatalogNamesTheDevicesAsTheRoutingExpects)
{
    PulseAudioHardware hardware;
    const QList<EZAudioDevice> inputs = EZAudioDevice::inputDevices(hardware);
    const QList<EZAudioDevice> outputs = EZAudioDevice::outputDevices(hardware);
    const auto find = [](const QList<EZAudioDevice> &list, const QString &name) {
        for (const EZAudioDevice &d : list)
            if (d.name() == name)
                return d;
        return EZAudioDevice();
    };
    const EZAudioDevice mic = find(inputs, "Built-in Microphone");
    EXPECT_EQ(mic.UID(), "builtin_mic");
    EXPECT_EQ(mic.inputChannelCount(), 2);
    const EZAudioDevice loop = find(inputs, "BlackHole 2ch");
    EXPECT_EQ(loop.UID(), "BlackHole2ch_UID");
    EXPECT_EQ(find(outputs, "BlackHole 2ch").deviceID(), loop.deviceID()); // one device, both ways
    EXPECT_EQ(find(outputs, "Built-in Output").UID(), "builtin_out");
    EXPECT_TRUE(find(outputs, "Built-in Microphone").UID().isEmpty()); // a source plays nothing
    // Ids stay with their devices from one call to the next.
    EXPECT_EQ(find(EZAudioDevice::inputDevices(hardware), "Built-in Microphone").deviceID(),
              mic.deviceID());
}

TEST_F(PulseAudioTest, RoutingBuildsTheAggregatesAndSetsTheDefaults)
{
    PulseAudioHardware hardware;
    FakePlatform fake;
    Platform platform = fake.platform();
    platform.audio = &hardware;
    FakeSessionHost host;
    {
        TNRecordManager manager(platform, host);
        QTest::qWait(700);
        EXPECT_EQ(modulesNamed("sink_name=MR-OutputDevice slaves=builtin_out,BlackHole2ch_UID"), 1);
        EXPECT_EQ(modulesNamed("sink_name=MR-InputDevice"), 1);
        EXPECT_EQ(modulesNamed("source=builtin_mic sink=MR-InputDevice"), 1);
        EXPECT_EQ(modulesNamed("source=BlackHole2ch_UID.monitor sink=MR-InputDevice"), 1);
        ASSERT_TRUE(manager.aggregateOutputDevice());
        ASSERT_TRUE(manager.aggregateInputDevcie());

        struct Case {
            quint64 type;
            const char *source;
        };
        for (const Case c : {Case{AudioTypeSystem, "BlackHole2ch_UID.monitor"},
                             Case{AudioTypeMicphone, "builtin_mic"},
                             Case{AudioTypeSystemAndMicphone, "MR-InputDevice.monitor"},
                             Case{AudioTypeNone, "MR-InputDevice.monitor"}}) {
            SCOPED_TRACE(c.type);
            manager.switchRecordType(c.type);
            EXPECT_EQ(serverDefault("Default Source"), c.source);
            EXPECT_EQ(serverDefault("Default Sink"), "MR-OutputDevice");
        }

        // A second routing replaces the aggregates rather than adding to them.
        manager.prepareDevice();
        QTest::qWait(700);
        EXPECT_EQ(modulesNamed("sink_name=MR-OutputDevice"), 1);
        EXPECT_EQ(modulesNamed("sink=MR-InputDevice"), 2);
        manager.destroyAggregatesAtQuit();
    }
    EXPECT_EQ(modulesNamed("MR-"), 0);

    // A run that ends without its teardown (a crash) leaves its aggregates behind; the next
    // run, with device ids of its own, replaces them at its start.
    {
        PulseAudioHardware crashedRun;
        platform.audio = &crashedRun;
        TNRecordManager crashed(platform, host);
        QTest::qWait(700);
    }
    EXPECT_EQ(modulesNamed("sink_name=MR-OutputDevice"), 1);
    {
        PulseAudioHardware nextRun;
        platform.audio = &nextRun;
        TNRecordManager next(platform, host);
        QTest::qWait(700);
        EXPECT_EQ(modulesNamed("sink_name=MR-OutputDevice"), 1);
        EXPECT_EQ(modulesNamed("sink_name=MR-InputDevice"), 1);
        EXPECT_EQ(modulesNamed("sink=MR-InputDevice"), 2);
        next.destroyAggregatesAtQuit();
    }
    EXPECT_EQ(modulesNamed("MR-"), 0);
    pactl({"set-default-sink", "builtin_out"});
    pactl({"set-default-source", "builtin_mic"});
}

TEST_F(PulseAudioTest, SoundOnlyRecordingsHoldThePlayedTone)
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());
    {
        LinuxPlatform platform;
        std::unique_ptr<AppDelegate> app = AppDelegate::create(platform.platform());
        TNRecordManager &manager = *app->recordManager();
        QTest::qWait(700);
        manager.setRecordVideoType(VideoTypeAudioOnly);
        // The computer plays 440 Hz, the microphone hears 660 Hz; each choice records its own.
        struct Case {
            const char *file;
            int choice; // sound pop-up: 1 system, 2 microphone, 3 both
            bool system;
            bool microphone;
        };
        for (const Case c :
             {Case{"system.mp3", 1, true, false}, Case{"system.wav", 1, true, false},
              Case{"system.m4a", 1, true, false}, Case{"microphone.m4a", 2, false, true},
              Case{"both.m4a", 3, true, true}}) {
            SCOPED_TRACE(c.file);
            app->audioChangeAction(c.choice);
            const QString path = QDir(home.path()).filePath(c.file);
            app->setOutputPath(path);
            QProcess computer, voice;
            playTone(computer, 440, 5, "MR-OutputDevice");
            playTone(voice, 660, 5, "mic_feed");
            QTest::qWait(500);
            // The wait may run long when the event loop is busy; the clock says how long.
            QElapsedTimer recorded;
            recorded.start();
            manager.startRecording();
            QTest::qWait(3000);
            manager.stopRecording();
            const double seconds = recorded.elapsed() / 1000.0;
            computer.waitForFinished(10000);
            voice.waitForFinished(10000);
            const ProbedAudio audio = MediaProbe::probeAudio(path);
            ASSERT_TRUE(audio.ok);
            EXPECT_NEAR(audio.duration, seconds, 0.1);
            const std::vector<float> sound = MediaProbe::monoSamples(path);
            const auto heard = [&](double frequency) {
                return MediaProbe::toneAmplitude(sound, audio.sampleRate, frequency) > 0.03;
            };
            EXPECT_EQ(heard(440), c.system);
            EXPECT_EQ(heard(660), c.microphone);
            EXPECT_FALSE(heard(550));
        }
        app->applicationWillTerminate();
    }
    EXPECT_EQ(modulesNamed("MR-"), 0);
    pactl({"set-default-sink", "builtin_out"});
    pactl({"set-default-source", "builtin_mic"});
}

TEST_F(PulseAudioTest, CaptureDeliversThePlayedToneUnbroken)
{
    PulseAudioHardware hardware;
    PulseAudioCaptureInput input(hardware);
    std::mutex mutex;
    std::vector<float> left;
    input.setFormat(44100, 2);
    input.setSampleCallback([&](const AudioSampleBuffer &b) {
        // Planar: the first channel's samples come first.
        const auto *samples = reinterpret_cast<const int32_t *>(b.data.constData());
        const qsizetype frames = b.data.size() / 4 / b.channels;
        std::lock_guard lock(mutex);
        for (qsizetype i = 0; i < frames; ++i)
            left.push_back(float(samples[i]) / 2147483648.0f);
    });
    ASSERT_TRUE(input.setDevice("BlackHole 2ch"));
    QProcess player;
    playTone(player, 440, 3, "BlackHole2ch_UID");
    QTest::qWait(300);
    input.startRunning();
    QTest::qWait(2000);
    input.stopRunning();
    player.waitForFinished(10000);
    std::lock_guard lock(mutex);
    EXPECT_NEAR(double(left.size()) / 44100, 2.0, 0.2);
    EXPECT_NEAR(MediaProbe::toneFrequency(left, 44100), 440, 2);
}

TEST_F(PulseAudioTest, AVanishingDeviceEndsTheStreamWithAnError)
{
    const QString extra = pactl({"load-module", "module-null-sink", "sink_name=usb_mic",
                                 "sink_properties='device.description=\"USB Microphone\"'"});
    keepClocked("usb_mic"); // goes with its sink
    QTest::qWait(2000);
    PulseAudioHardware hardware;
    PulseAudioCaptureInput input(hardware);
    std::atomic<int> buffers{0};
    std::atomic<bool> failed{false};
    input.setFormat(44100, 2);
    input.setSampleCallback([&](const AudioSampleBuffer &b) {
        EXPECT_EQ(b.channels, 2);
        ++buffers;
    });
    input.setSessionEventCallback([&](CaptureSessionEvent e, const QString &) {
        if (e == CaptureSessionEvent::RuntimeError)
            failed = true;
    });
    ASSERT_TRUE(input.setDevice("USB Microphone"));
    QProcess player; // a null sink's monitor runs while something plays to it
    playTone(player, 440, 3, "usb_mic");
    input.startRunning();
    QTest::qWait(500);
    EXPECT_GT(buffers.load(), 5);
    pactl({"unload-module", extra});
    QTest::qWait(500);
    EXPECT_TRUE(failed.load());
    input.stopRunning();
    EXPECT_FALSE(input.isRunning());
    player.waitForFinished(10000);
}

TEST(PulseAudioWithoutServer, NoServerMeansNoDevicesQuickly)
{
    const QByteArray saved = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nonexistent/native");
    QElapsedTimer clock;
    clock.start();
    {
        PulseAudioHardware hardware;
        EXPECT_TRUE(EZAudioDevice::devices(hardware).isEmpty());
        PulseAudioCaptureInput input(hardware);
        EXPECT_TRUE(input.devices().isEmpty());
        input.startRunning(); // reports the failure, does not run
        EXPECT_FALSE(input.isRunning());
    }
    EXPECT_LT(clock.elapsed(), 5000);
    qputenv("PULSE_SERVER", saved);
}

TEST(PulseAudioWithoutServer, AScreenRecordingRunsWithoutSound)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        GTEST_SKIP() << "needs the test desktop (scripts/test-desktop)";
    const QByteArray saved = qgetenv("PULSE_SERVER");
    qputenv("PULSE_SERVER", "unix:/nonexistent/native");
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());
    const QString path = QDir(home.path()).filePath("silent.mp4");
    {
        LinuxPlatform desktop;
        std::unique_ptr<AppDelegate> app = AppDelegate::create(desktop.platform());
        app->audioChangeAction(1); // system sound asked for, none to be had
        startPlainRegionRecording(*app, desktop.platform(), QRect(0, 0, 320, 240), 25, path);
        QTest::qWait(2000);
        app->recordManager()->stopRecording();
        app->applicationWillTerminate();
    }
    qputenv("PULSE_SERVER", saved);
    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    EXPECT_NEAR(video.duration, 2.0, 0.3);
    // The sound track the settings asked for is there, silent, as long as the picture.
    EXPECT_NEAR(MediaProbe::probeAudio(path).duration, video.duration, 0.25);
    float peak = 0;
    for (float sample : MediaProbe::monoSamples(path))
        peak = std::max(peak, std::abs(sample));
    EXPECT_LT(peak, 1e-3);
}

} // namespace
