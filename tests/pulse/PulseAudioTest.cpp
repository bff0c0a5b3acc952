// Sound for real on the test desktop's sound server, PulseAudio or PipeWire: the device
// catalog, the two aggregates and the defaults each recording type sets, recordings of a
// played tone, a device that vanishes mid-stream, a server restarted under the adapter, and a
// program without a sound server.
#include "AppDelegate.h"
#include "AudioDeviceNames.h"
#include "EZAudioDevice.h"
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "LinuxPlatform.h"
#include "LogCapture.h"
#include "MediaProbe.h"
#include "PulseAudioCaptureInput.h"
#include "PulseAudioHardware.h"
#include "SoundDeskTest.h"

#include <QDir>
#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <algorithm>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>

namespace {

class PulseAudioTest : public SoundDeskTest {};

// How long a tone plays before a capture of it starts. PipeWire starts a new playback stream
// some hundred milliseconds later than PulseAudio, and the tone's onset, with the resampler's
// ringing around it, must lie before the captured stretch that is measured.
constexpr int kToneLeadMs = 1000;

// The captured tone from its onset on: a new record stream on PipeWire begins with a few
// milliseconds of silence and the resampler's ringing, whose small wiggles would count as
// zero crossings. Whatever breaks the tone later still shows.
std::vector<float> fromOnset(const std::vector<float> &samples)
{
    const auto loud =
        std::find_if(samples.begin(), samples.end(), [](float v) { return std::abs(v) > 0.05f; });
    const auto settled =
        std::min(samples.end(), loud + std::min<std::ptrdiff_t>(samples.end() - loud, 441));
    return {settled, samples.end()};
}

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

// The server's null sinks and remapped sources have no ports; what it lets a virtual capture
// device carry is the form factor and the bus, as USB and webcam microphones say them.
TEST_F(PulseAudioTest, CaptureDevicesWithMicrophonePropertiesAreOfferedAsMicrophones)
{
    struct Case {
        const char *properties;
        const char *name;
        bool microphone;
    };
    const Case cases[] = {
        {"device.form_factor=microphone", "Desk Capture Microphone", true},
        {"device.form_factor=webcam device.bus=usb", "Desk Capture Microphone", true},
        {"device.bus=usb", "Desk Capture Microphone", true},
        {"device.bus=pci", "Desk Capture", false},
    };
    PulseAudioHardware hardware;
    for (const Case &c : cases) {
        SCOPED_TRACE(c.properties);
        const QString module =
            pactl({"load-module", "module-remap-source", "master=mic_feed.monitor",
                   "source_name=desk_capture",
                   QString("source_properties='device.description=\"Desk Capture\" %1'")
                       .arg(c.properties)});
        ASSERT_FALSE(module.isEmpty());
        EZAudioDevice found;
        for (const EZAudioDevice &d : EZAudioDevice::inputDevices(hardware))
            if (d.UID() == "desk_capture")
                found = d;
        EXPECT_EQ(found.name(), c.name);
        EXPECT_EQ(AudioDeviceNames::isSecondPassMicrophone(found.name()), c.microphone);
        pactl({"unload-module", module});
    }
    // A sink that calls itself a microphone is recorded through its monitor, which is what it
    // plays: never a microphone.
    const QString sink =
        pactl({"load-module", "module-null-sink", "sink_name=desk_fake_mic",
               "sink_properties='device.description=\"Desk Sink\" device.form_factor=microphone'"});
    QString sinkName;
    for (const EZAudioDevice &d : EZAudioDevice::inputDevices(hardware)) {
        if (d.UID() == "desk_fake_mic")
            sinkName = d.name();
    }
    EXPECT_EQ(sinkName, "Desk Sink");
    pactl({"unload-module", sink});
}

// Names are the user's: quotes, spaces and backslashes reach the server and come back as
// they were, in both kinds of aggregate. PipeWire's pulse server (0.3.65) keeps backslash
// escapes in module arguments, so no quote character can reach it: there the quotes come
// back as typographic ones, and all the rest as it was.
TEST_F(PulseAudioTest, AnAggregateKeepsANameWithQuotesSpacesAndBackslashes)
{
    PulseAudioHardware hardware;
    const QString name = QStringLiteral("Desk \"Mix\" it's C:\\Sound\\ sink_name=x '");
    const QString kept =
        pipewire_ ? QString::fromUtf8("Desk ”Mix” it’s C:\\Sound\\ sink_name=x ’") : name;
    struct Case {
        bool stacked;
        const char *uid; // any name: the adapter knows its aggregates by their mark
        const char *first;
        const char *second;
    };
    for (const Case c : {Case{true, "desk_mix_out", "builtin_out", "BlackHole2ch_UID"},
                         Case{false, "desk_mix_in", "builtin_mic", "BlackHole2ch_UID"}}) {
        SCOPED_TRACE(c.stacked ? "playing" : "recording");
        QVariantMap description{
            {"name", name},
            {"uid", c.uid},
            {"subdevices",
             QVariantList{QVariantMap{{"uid", c.first}}, QVariantMap{{"uid", c.second}}}},
        };
        if (c.stacked)
            description.insert("stacked", 1);
        AudioObjectID made = kAudioObjectUnknown;
        ASSERT_EQ(hardware.AudioHardwareCreateAggregateDevice(description, &made), noErr);
        PulseAudioHardware::Device listed;
        for (const PulseAudioHardware::Device &d : hardware.snapshot().devices)
            if (d.id == made)
                listed = d;
        EXPECT_EQ(listed.name, kept);
        EXPECT_EQ(listed.transport, kAudioDeviceTransportTypeAggregate);
        // A recording aggregate is a null sink, yet nothing may be played to it.
        EXPECT_EQ(listed.outputChannels > 0, c.stacked);
        EXPECT_EQ(hardware.AudioHardwareDestroyAggregateDevice(made), noErr);
        EXPECT_EQ(modulesNamed(c.uid), 0); // loopbacks included
    }
}

// The adapter answers from a snapshot it renews on the server's events; a change made just
// before an enumeration, by someone else, is in it all the same, and the enumeration costs
// one round trip to the server (two when it has to read the devices again), not one a read.
TEST_F(PulseAudioTest, TheNextEnumerationSeesChangesMadeBehindTheAdaptersBack)
{
    PulseAudioHardware hardware;
    const auto uids = [&] {
        QStringList list;
        for (const EZAudioDevice &d : EZAudioDevice::devices(hardware))
            list << d.UID();
        return list;
    };
    ASSERT_TRUE(uids().contains("builtin_mic"));
    // PipeWire applies a new default a moment after pactl returns (its session manager
    // decides): what is checked is that the adapter sees it once the server says so.
    const auto setDefault = [](const char *what, const QString &name) {
        pactl({QString(what) == "Default Sink" ? "set-default-sink" : "set-default-source", name});
        for (int i = 0; i < 100 && serverDefault(what) != name; ++i)
            QTest::qWait(20);
    };
    // The same for devices: PipeWire may still list a sink a moment after its module went.
    const auto serverLists = [](const QString &sink, bool listed) {
        for (int i = 0; i < 100 && pactl({"list", "short", "sinks"}).contains(sink) != listed; ++i)
            QTest::qWait(20);
    };
    QString module;
    struct Step {
        const char *what;
        std::function<void()> change;
        std::function<void()> check;
    };
    const Step steps[] = {
        {"a device plugged in",
         [&] {
             module = pactl({"load-module", "module-null-sink", "sink_name=desk_plugged",
                             "sink_properties=device.description=Plugged"});
             serverLists("desk_plugged", true);
         },
         [&] { EXPECT_TRUE(uids().contains("desk_plugged")); }},
        {"a device pulled out",
         [&] {
             pactl({"unload-module", module});
             serverLists("desk_plugged", false);
         },
         [&] { EXPECT_FALSE(uids().contains("desk_plugged")); }},
        {"the default input changed",
         [&] { setDefault("Default Source", "BlackHole2ch_UID.monitor"); },
         [&] { EXPECT_EQ(EZAudioDevice::currentInputDevice(hardware).UID(), "BlackHole2ch_UID"); }},
        {"the default output changed", [&] { setDefault("Default Sink", "BlackHole2ch_UID"); },
         [&] {
             EXPECT_EQ(EZAudioDevice::currentOutputDevice(hardware).UID(), "BlackHole2ch_UID");
         }},
        {"the defaults changed back",
         [&] {
             setDefault("Default Source", "builtin_mic");
             setDefault("Default Sink", "builtin_out");
         },
         [&] {
             EXPECT_EQ(EZAudioDevice::currentInputDevice(hardware).UID(), "builtin_mic");
             EXPECT_EQ(EZAudioDevice::currentOutputDevice(hardware).UID(), "builtin_out");
         }},
    };
    for (const Step &step : steps) {
        SCOPED_TRACE(step.what);
        step.change();
        step.check(); // at once: no waiting for the event
    }

    // The null sinks' state changes are events too, so an enumeration may read the devices
    // again; but it always asks the server once (else a change just made could be missed),
    // never more than twice, and when nothing changed, once.
    int fewest = 100;
    for (int i = 0; i < 10; ++i) {
        const int before = hardware.serverRoundTrips();
        EXPECT_FALSE(EZAudioDevice::inputDevices(hardware).isEmpty());
        const int trips = hardware.serverRoundTrips() - before;
        EXPECT_GE(trips, 1);
        EXPECT_LE(trips, 2);
        fewest = std::min(fewest, trips);
    }
    EXPECT_EQ(fewest, 1);
}

// Sound that cannot be had is told as a run-time error, and the input does not claim to run.
TEST_F(PulseAudioTest, AStreamThatCannotRecordReachesTheErrorPath)
{
    struct Case {
        const char *what;
        int channels;
        bool sourceGone;
    };
    for (const Case c : {Case{"a format the server refuses", 0, false},
                         Case{"a source gone before the start", 2, true}}) {
        SCOPED_TRACE(c.what);
        const QString module =
            pactl({"load-module", "module-remap-source", "master=mic_feed.monitor",
                   "source_name=desk_brief_mic", "source_properties=device.description=Brief"});
        PulseAudioHardware hardware;
        PulseAudioCaptureInput input(hardware);
        std::atomic<int> errors{0};
        std::mutex mutex;
        QString error;
        input.setSessionEventCallback([&](CaptureSessionEvent e, const QString &text) {
            if (e != CaptureSessionEvent::RuntimeError)
                return;
            std::lock_guard lock(mutex);
            error = text;
            ++errors;
        });
        input.setFormat(44100, c.channels);
        ASSERT_TRUE(input.setDevice("Brief"));
        if (c.sourceGone)
            pactl({"unload-module", module});
        input.startRunning();
        EXPECT_TRUE(waitFor([&] { return errors.load() > 0; }));
        EXPECT_FALSE(input.isRunning());
        {
            std::lock_guard lock(mutex);
            EXPECT_FALSE(error.isEmpty()); // the engine passes over an empty error
        }
        input.stopRunning();
        EXPECT_EQ(errors.load(), 1);
        if (!c.sourceGone)
            pactl({"unload-module", module});
    }
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

// The stream may take a moment to start (on PipeWire the session manager links it first, slower
// on a busy machine); from its first buffer on, every moment of sound arrives.
TEST_F(PulseAudioTest, CaptureDeliversThePlayedToneUnbroken)
{
    PulseAudioHardware hardware;
    PulseAudioCaptureInput input(hardware);
    std::mutex mutex;
    std::vector<float> left;
    QElapsedTimer clock;
    qint64 firstAt = -1; // ms on the clock, under the mutex
    input.setFormat(44100, 2);
    input.setSampleCallback([&](const AudioSampleBuffer &b) {
        // Planar: the first channel's samples come first.
        const auto *samples = reinterpret_cast<const int32_t *>(b.data.constData());
        const qsizetype frames = b.data.size() / 4 / b.channels;
        std::lock_guard lock(mutex);
        if (firstAt < 0)
            firstAt = clock.elapsed() - frames * 1000 / 44100; // when its first sample came
        for (qsizetype i = 0; i < frames; ++i)
            left.push_back(float(samples[i]) / 2147483648.0f);
    });
    ASSERT_TRUE(input.setDevice("BlackHole 2ch"));
    QProcess player;
    playTone(player, 440, 5, "BlackHole2ch_UID");
    QTest::qWait(kToneLeadMs);
    clock.start();
    input.startRunning();
    QTest::qWait(2500);
    input.stopRunning();
    const qint64 stoppedAt = clock.elapsed();
    player.waitForFinished(10000);
    std::lock_guard lock(mutex);
    ASSERT_GE(firstAt, 0);
    EXPECT_LT(firstAt, 700);
    // What the server still held at the stop is not delivered: a buffer or two.
    EXPECT_NEAR(double(left.size()) / 44100, (stoppedAt - firstAt) / 1000.0, 0.1);
    const std::vector<float> tone = fromOnset(left);
    EXPECT_GT(double(tone.size()) / 44100, 1.5);
    EXPECT_NEAR(MediaProbe::toneFrequency(tone, 44100), 440, 2);
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
    EXPECT_FALSE(input.isRunning()); // a failed stream records nothing
    input.stopRunning();
    EXPECT_FALSE(input.isRunning());
    player.waitForFinished(10000);
}

// The server killed and started again: the stream ends with an error, the catalog is empty
// while the server is away, and afterwards the adapter is connected again by itself, with
// the same ids, the server's events flowing again, and a stream that records.
TEST_F(PulseAudioTest, TheAdapterFindsARestartedServerAgain)
{
    LogCapture log;
    PulseAudioHardware hardware;
    PulseAudioCaptureInput input(hardware);
    const auto devices = [&] {
        QMap<QString, AudioObjectID> ids;
        for (const EZAudioDevice &d : EZAudioDevice::devices(hardware))
            ids.insert(d.UID(), d.deviceID());
        return ids;
    };
    const QMap<QString, AudioObjectID> before = devices();
    ASSERT_TRUE(before.contains("BlackHole2ch_UID"));
    std::atomic<int> errors{0}, buffers{0};
    std::mutex mutex;
    std::vector<float> left;
    input.setFormat(44100, 2);
    input.setSampleCallback([&](const AudioSampleBuffer &b) {
        const auto *samples = reinterpret_cast<const int32_t *>(b.data.constData());
        std::lock_guard lock(mutex);
        for (qsizetype i = 0; i < b.data.size() / 4 / b.channels; ++i)
            left.push_back(float(samples[i]) / 2147483648.0f);
        ++buffers;
    });
    input.setSessionEventCallback([&](CaptureSessionEvent e, const QString &) {
        if (e == CaptureSessionEvent::RuntimeError)
            ++errors;
    });
    ASSERT_TRUE(input.setDevice("BlackHole 2ch"));
    input.startRunning();
    ASSERT_TRUE(waitFor([&] { return buffers.load() > 5; }));

    restartServer([&] {
        EXPECT_TRUE(waitFor([&] { return errors.load() > 0; }));
        EXPECT_FALSE(input.isRunning());
        EXPECT_TRUE(devices().isEmpty()); // no server, no devices, no wait
    });
    EXPECT_TRUE(waitFor([&] { return devices().contains("BlackHole2ch_UID"); }));
    const QMap<QString, AudioObjectID> after = devices();
    for (const char *uid : {"BlackHole2ch_UID", "builtin_mic", "builtin_out"})
        EXPECT_EQ(after.value(uid), before.value(uid)) << uid;
    const QStringList lines = log.lines();
    EXPECT_FALSE(lines.filter("the sound server went away").isEmpty())
        << lines.join('\n').toStdString();
    EXPECT_FALSE(lines.filter("the sound server answers again").isEmpty());

    // The events come again: a device plugged in now is in the next enumeration at once.
    const QString plugged = pactl({"load-module", "module-null-sink", "sink_name=desk_replugged",
                                   "sink_properties=device.description=Replugged"});
    EXPECT_TRUE(devices().contains("desk_replugged"));
    pactl({"unload-module", plugged});

    // And the loopback device records again.
    input.stopRunning();
    {
        std::lock_guard lock(mutex);
        left.clear();
    }
    QProcess player;
    playTone(player, 440, 4, "BlackHole2ch_UID");
    QTest::qWait(kToneLeadMs);
    input.startRunning();
    QTest::qWait(2000);
    input.stopRunning();
    player.waitForFinished(10000);
    std::lock_guard lock(mutex);
    EXPECT_NEAR(double(left.size()) / 44100, 2.0, 0.25);
    const std::vector<float> tone = fromOnset(left);
    EXPECT_GT(double(tone.size()) / 44100, 1.5);
    EXPECT_NEAR(MediaProbe::toneFrequency(tone, 44100), 440, 2);
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
