#pragma once
// The sound devices of a machine with a microphone, speakers and the loopback device, made
// of null sinks on the test desktop's sound server (PulseAudio or PipeWire, as
// CAPSTAN_SOUND_SERVER chose) for one test suite; a tone player; and a server restart.
#include "AppDelegate.h"
#include "FakePorts.h"
#include "HomeMainWindow.h"
#include "LinuxPlatform.h"
#include "ScreenCatalog.h"

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

inline QString pactl(const QStringList &arguments)
{
    QProcess process;
    process.start("pactl", arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

inline QString serverDefault(const char *what) // "Default Sink" or "Default Source"
{
    for (const QString &line : pactl({"info"}).split('\n'))
        if (line.startsWith(what))
            return line.section(':', 1).trimmed();
    return {};
}

inline int modulesNamed(const QString &text)
{
    return int(pactl({"list", "short", "modules"}).split('\n').filter(text).size());
}

class SoundDeskTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (qEnvironmentVariableIsEmpty("PULSE_SERVER"))
            return;
        // A busy server may let one request time out; a desktop that is there is waited for.
        for (int attempt = 0; attempt < 3 && !available_; ++attempt)
            available_ = !pactl({"info"}).isEmpty();
        if (!available_)
            return;
        pipewire_ = pactl({"info"}).contains("PipeWire");
        loadDevices();
    }

    // A machine with a microphone, speakers and the loopback device; its own devices are the
    // defaults, as on such a machine.
    static void loadDevices()
    {
        // PipeWire has no null source, and needs none: its null sinks keep time on their own.
        if (!pipewire_)
            modules_ << pactl({"load-module", "module-null-source", "source_name=test_silence"});
        const QStringList loads[] = {
            {"module-null-sink", "sink_name=builtin_out",
             "sink_properties='device.description=\"Built-in Output\"'"},
            {"module-null-sink", "sink_name=BlackHole2ch_UID",
             "sink_properties='device.description=\"BlackHole 2ch\"'"},
            {"module-null-sink", "sink_name=mic_feed",
             "sink_properties='device.description=\"Mic Feed\"'"},
            {"module-remap-source", "master=mic_feed.monitor", "source_name=builtin_mic",
             "source_properties='device.description=\"Built-in Microphone\"'"},
        };
        for (const QStringList &load : loads)
            modules_ << pactl(QStringList{"load-module"} + load);
        for (const char *sink : {"builtin_out", "BlackHole2ch_UID", "mic_feed"})
            modules_ << keepClocked(sink);
        modules_.removeAll(QString());
        // A new loopback takes a good second before its sink keeps steady time. The event
        // loop runs meanwhile: a program under test goes on as it would.
        QTest::qWait(2000);
        pactl({"set-default-sink", "builtin_out"});
        pactl({"set-default-source", "builtin_mic"});
    }

    // The server the tests talk to, as ctest named it: "pipewire" or "pulseaudio".
    static QString serverName() { return pipewire_ ? "pipewire" : "pulseaudio"; }

    // Kills the sound server (scripts/test-desktop sound-stop), waits, starts it again with
    // the desktop's devices and loads this suite's again: what a crash and a restart of the
    // user's server do. whileDown runs in between, with the server gone.
    static void restartServer(const std::function<void()> &whileDown)
    {
        ASSERT_TRUE(desk({"sound-stop", serverName()}));
        modules_.clear(); // gone with the server
        whileDown();
        ASSERT_TRUE(desk({"sound-start", serverName()}));
        ASSERT_FALSE(pactl({"info"}).isEmpty());
        loadDevices();
    }

    // Runs scripts/test-desktop with the event loop running, so the program under test does
    // not stall; true when it succeeded.
    static bool desk(const QStringList &arguments)
    {
        QProcess script;
        script.setProcessChannelMode(QProcess::ForwardedChannels);
        script.start(QStringLiteral(CAPSTAN_TEST_DESKTOP), arguments);
        for (int i = 0; i < 300 && script.state() != QProcess::NotRunning; ++i)
            QTest::qWait(100);
        return script.state() == QProcess::NotRunning &&
               script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0;
    }

    static void TearDownTestSuite()
    {
        if (available_) {
            pactl({"set-default-sink", "desk_speaker"});
            pactl({"set-default-source", "desk_mic"});
        }
        for (auto it = modules_.crbegin(); it != modules_.crend(); ++it)
            pactl({"unload-module", *it});
        modules_.clear();
    }

    void SetUp() override
    {
        if (!available_ && qEnvironmentVariableIsEmpty("PULSE_SERVER"))
            GTEST_SKIP() << "needs the test desktop's sound server (scripts/test-desktop)";
        ASSERT_TRUE(available_) << "the test desktop's sound server does not answer";
        // The server ctest named is the one that answers, not the other one.
        const QByteArray named = qgetenv("CAPSTAN_SOUND_SERVER");
        if (!named.isEmpty()) {
            ASSERT_EQ(serverName(), QString::fromUtf8(named));
        }
    }

    void TearDown() override { plugMicrophoneBackIn(); }

    // Unloads the module of "Built-in Microphone", as pulling out a USB microphone would.
    void unplugMicrophone()
    {
        for (const QString &line : pactl({"list", "short", "modules"}).split('\n')) {
            const QStringList fields = line.split('\t');
            if (fields.size() >= 3 && fields[2].contains("source_name=builtin_mic")) {
                unpluggedIndex_ = fields[0];
                unplugged_ = QStringList{fields[1], fields[2]}; // pactl joins them again
            }
        }
        ASSERT_FALSE(unplugged_.isEmpty());
        pactl({"unload-module", unpluggedIndex_});
    }

    void plugMicrophoneBackIn()
    {
        if (unplugged_.isEmpty())
            return;
        const QString index = pactl(QStringList{"load-module"} + unplugged_);
        modules_.replace(modules_.indexOf(unpluggedIndex_), index);
        unplugged_.clear();
    }

    // A PulseAudio null sink runs on its own timer only while a stream plays into it; without
    // one its monitor delivers late and in bursts. Real hardware keeps time; a silent stream
    // does here. PipeWire's null sinks drive their own graph: nothing to do, no module.
    static QString keepClocked(const QString &sink)
    {
        if (pipewire_)
            return {};
        return pactl({"load-module", "module-loopback", "source=test_silence", "sink=" + sink,
                      "latency_msec=60", "source_dont_move=true", "sink_dont_move=true"});
    }

    // Waits up to five seconds, keeping the event loop running.
    static bool waitFor(const std::function<bool()> &condition)
    {
        for (int i = 0; i < 50 && !condition(); ++i)
            QTest::qWait(100);
        return condition();
    }

    // Plays a tone to a sink for the given time, in the background.
    static void playTone(QProcess &player, int frequency, int seconds, const QString &sink)
    {
        player.setProgram("sh");
        player.setArguments(
            {"-c", QString("ffmpeg -v error -f lavfi -i sine=frequency=%1:duration=%2 -f s16le "
                           "-ac 2 -ar 44100 - | pacat --raw --format=s16le --channels=2 "
                           "--rate=44100 --device=%3")
                       .arg(frequency)
                       .arg(seconds)
                       .arg(sink)});
        player.start();
    }

    static inline bool available_ = false;
    static inline bool pipewire_ = false;
    static inline QStringList modules_;
    QString unpluggedIndex_;
    QStringList unplugged_;
};

// Starts a recording of a region of the first screen (X coordinates) without cursor or
// watermarks, set up the way the overlay does it.
inline void startPlainRegionRecording(AppDelegate &app, const Platform &platform,
                                      const QRect &region, int fps, const QString &path)
{
    app.setFps(fps);
    app.setIsShowMouse(false);
    app.setIsMouseClickEffect(false);
    app.setIsTimeTextWatermark(false);
    app.setWatermarkType(2);
    TNRecordManager &manager = *app.recordManager();
    const ScreenInfo screen = platform.screens->screens().value(0);
    // The overlay's rectangle has its origin at the screen's lower left, y up.
    const QRectF rect(region.x(), screen.frame.height() - region.y() - region.height(),
                      region.width(), region.height());
    app.setOutputPath(path);
    EncodeManager &encoder = manager.encodeManager();
    encoder.setFps(fps);
    encoder.setVideoBitrate(2000);
    encoder.setImageSize(rect.size());
    manager.setRecordVideoType(VideoTypeCustomArea);
    manager.setScreen(screen);
    manager.setCaptureRect(rect);
    manager.startRecording();
}

// Capstan on the desktop's own devices, with a home of its own and alerts that do not wait for
// a click.
struct DeskProgram {
    QTemporaryDir home;
    // Before the platform, whose settings store reads it.
    bool homeSet = (qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8()), true);
    LinuxPlatform desktop;
    FakeAlerts alerts;
    Platform platform = withAlerts(desktop.platform(), &alerts);
    // The program always has its main window; it outlives the delegate, as in the program.
    HomeMainWindow window;
    std::unique_ptr<AppDelegate> app = AppDelegate::create(platform);
    bool windowSet = (app->setWindow(&window), true);
    TNRecordManager &manager = *app->recordManager();

    static Platform withAlerts(Platform platform, Alerts *alerts)
    {
        platform.alerts = alerts;
        return platform;
    }
};
