// bench_ui_record: the whole program, built as main() builds it (controller, main window,
// tray), records the whole screen with system sound, started and stopped through its own
// actions, while a moving pattern fills the screen and a tone plays to the default output.
// It prints:
//   - the process's CPU seconds per second of recording, and next to it the engine-only
//     figure of bench_record_screen (run from its folder with the same length), with the
//     difference against the goal of 0.05 CPU s/s;
//     and the process's CPU by thread;
//   - the interface thread's event-loop delay: how late a 5 ms timer fires (worst, 99th
//     percentile, mean), against the goal of a worst under 20 ms; the time the start and
//     stop toggles hold the thread; and the event handlers that took its time;
//   - the file's frames and duration, and its sound, as ffprobe and ffmpeg read them, and
//     whether the level bar followed the tone;
//   - how busy the machine was (load average, busy cores while recording): the figures of a
//     shared machine vary with it.
//
// Run it on a desktop of one 1920x1080 monitor with a sound server, e.g.
//   eval "$(DESK_SPLIT=0 DESK_STATE=/tmp/capstan-bench scripts/test-desktop start)"
// BENCH_SECONDS sets the length (20). The program's home, settings and recordings are in a
// temporary folder; the sound devices it adds to the desk's server are taken away again.
#include "../BenchProgram.h"
#include "../ProcessFigures.h"
#include "AppDelegate.h"
#include "DesktopWorkspace.h"
#include "HomeMainWindow.h"
#include "LinuxPlatform.h"
#include "Localization.h"
#include "MediaProbe.h"
#include "NSVertProgressView.h"
#include "ScreenCatalog.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMetaEnum>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kProbeIntervalMs = 5;
constexpr double kCpuGoal = 0.05;
constexpr double kDelayGoalMs = 20.0;
constexpr int kFps = 30;
constexpr int kToneHz = 440;
// The meter's silence: its floor of 0.5 over its 34-point half height, and a little more.
constexpr float kLevelFloor = 0.5f / 34.0f + 0.001f;

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

// Runs a command to its end with the event loop running, so the program goes on meanwhile.
QString run(const QString &program, const QStringList &arguments, int timeoutMs = 10000)
{
    QProcess process;
    process.start(program, arguments);
    QElapsedTimer clock;
    clock.start();
    while (process.state() != QProcess::NotRunning && clock.elapsed() < timeoutMs)
        wait(20);
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
    }
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QString pactl(const QStringList &arguments)
{
    return run(QStringLiteral("pactl"), arguments);
}

QString pactlInfo(const QString &field) // "Default Sink", "Server Name"
{
    for (const QString &line : pactl({QStringLiteral("info")}).split(QLatin1Char('\n')))
        if (line.startsWith(field + QLatin1Char(':')))
            return line.section(QLatin1Char(':'), 1).trimmed();
    return {};
}

QString loadAverage()
{
    QFile file(QStringLiteral("/proc/loadavg"));
    if (!file.open(QIODevice::ReadOnly))
        return QStringLiteral("?");
    return QString::fromLatin1(file.readAll()).section(QLatin1Char(' '), 0, 2);
}

// The machine's busy and total jiffies over all cores, from /proc/stat.
struct MachineTimes {
    double busy = 0;
    double total = 0;
};

MachineTimes machineTimes()
{
    QFile file(QStringLiteral("/proc/stat"));
    MachineTimes times;
    if (!file.open(QIODevice::ReadOnly))
        return times;
    const QStringList fields = QString::fromLatin1(file.readLine()).simplified().split(' ');
    // cpu user nice system idle iowait irq softirq steal ...
    for (int i = 1; i < fields.size() && i <= 8; ++i) {
        const double value = fields[i].toDouble();
        times.total += value;
        if (i != 4 && i != 5)
            times.busy += value;
    }
    return times;
}

// The CPU seconds of this process's threads, by thread name (their "comm"): the main thread
// is the interface thread; unnamed threads carry the program's name.
QHash<QString, double> threadCpuSeconds()
{
    QHash<QString, double> byName;
    const long ticks = sysconf(_SC_CLK_TCK);
    const QString mainThread = QString::number(getpid());
    for (const QString &tid :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile stat(QStringLiteral("/proc/self/task/%1/stat").arg(tid));
        QFile comm(QStringLiteral("/proc/self/task/%1/comm").arg(tid));
        if (!stat.open(QIODevice::ReadOnly) || !comm.open(QIODevice::ReadOnly))
            continue;
        // The fields after the name in parentheses: state is the third, utime the 14th.
        const QString text = QString::fromLatin1(stat.readAll());
        const QStringList fields = text.mid(text.lastIndexOf(QLatin1Char(')')) + 2).split(' ');
        if (fields.size() < 13)
            continue;
        const double seconds = (fields[11].toDouble() + fields[12].toDouble()) / double(ticks);
        const QString name = tid == mainThread ? QStringLiteral("(interface thread)")
                                               : QString::fromLatin1(comm.readAll()).trimmed();
        byName[name] += seconds;
    }
    return byName;
}

// The interface thread's time, by handler: what the timer's lateness is made of.
class MeasuredApplication : public QApplication {
public:
    using QApplication::QApplication;

    struct Handler {
        double totalMs = 0;
        double cpuMs = 0;
        double worstMs = 0;
        int count = 0;
    };
    struct Single {
        double ms = 0;
        double cpuMs = 0;
        double atSeconds = 0;
        QString what;
    };

    bool notify(QObject *receiver, QEvent *event) override
    {
        // Other threads' events pass untouched: only the interface thread is measured.
        if (QThread::currentThread() != thread() || !measuring_)
            return QApplication::notify(receiver, event);
        // What a repaint covers: every widget painted, inside the handlers too.
        if (event->type() == QEvent::Paint) {
            const QString name = receiver->objectName().isEmpty()
                                     ? QString::fromLatin1(receiver->metaObject()->className())
                                     : QString::fromLatin1(receiver->metaObject()->className()) +
                                           QLatin1String(" \"") + receiver->objectName() +
                                           QLatin1Char('"');
            ++painted_[name];
        }
        if (depth_ > 0 || receiver == ignored_)
            return QApplication::notify(receiver, event);
        ++depth_;
        // Taken before the delivery: a handler may delete its receiver (a single-shot
        // timer does).
        const Delivery delivery{receiver->metaObject(),
                                receiver->parent() ? receiver->parent()->metaObject() : nullptr,
                                receiver->objectName(), int(event->type())};
        // Wall time is what the user waits; the thread's CPU time tells work from the
        // waits (the server's answers, other processes on the cores).
        const double cpuBefore = threadCpuMs();
        QElapsedTimer clock;
        clock.start();
        const bool result = QApplication::notify(receiver, event);
        const double ms = clock.nsecsElapsed() / 1e6;
        const double cpuMs = threadCpuMs() - cpuBefore;
        --depth_;
        if (ms >= 0.05) {
            const QString what = describe(delivery);
            Handler &handler = handlers_[what];
            handler.totalMs += ms;
            handler.cpuMs += cpuMs;
            handler.worstMs = std::max(handler.worstMs, ms);
            ++handler.count;
            singles_.push_back({ms, cpuMs, since_.nsecsElapsed() / 1e9, what});
        }
        return result;
    }

    void startMeasuring(QObject *ignored)
    {
        ignored_ = ignored;
        since_.start();
        measuring_ = true;
    }
    void stopMeasuring() { measuring_ = false; }
    const QHash<QString, Handler> &handlers() const { return handlers_; }
    const QHash<QString, int> &painted() const { return painted_; }
    std::vector<Single> singles() const { return singles_; }

private:
    static double threadCpuMs()
    {
        timespec now{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
    }

    struct Delivery {
        const QMetaObject *receiver;
        const QMetaObject *parent;
        QString objectName;
        int type;
    };

    // The receiver's class and the event; a timer or a plain QObject is named with the
    // class of its parent, which is where the work is.
    static QString describe(const Delivery &delivery)
    {
        QString name = QString::fromLatin1(delivery.receiver->className());
        if ((name == QLatin1String("QTimer") || name == QLatin1String("QObject")) &&
            delivery.parent)
            name += QLatin1String(" of ") + QString::fromLatin1(delivery.parent->className());
        if (!delivery.objectName.isEmpty())
            name += QLatin1String(" \"") + delivery.objectName + QLatin1Char('"');
        const int type = delivery.type;
        // Registered types count down from MaxUser: a MainThreadCall's call, for one.
        const char *known =
            type >= QEvent::User ? nullptr : QMetaEnum::fromType<QEvent::Type>().valueToKey(type);
        return name + QLatin1String(" / ") +
               (known ? QString::fromLatin1(known) : QStringLiteral("posted call %1").arg(type));
    }

    bool measuring_ = false;
    int depth_ = 0;
    QObject *ignored_ = nullptr;
    QElapsedTimer since_;
    QHash<QString, Handler> handlers_;
    QHash<QString, int> painted_;
    std::vector<Single> singles_;
};

// The engine-only figures of bench_record_screen, run as a child with the same length.
struct EngineFigures {
    bool ran = false;
    double cpuPerSecond = 0;
    QString loopDelay;
};

EngineFigures runRecordScreenBench(const QString &folder, int seconds)
{
    EngineFigures figures;
    const QString program = folder + QStringLiteral("/bench_record_screen");
    if (!QFile::exists(program)) {
        std::printf("bench_record_screen not found in %s: no comparison\n", qPrintable(folder));
        return figures;
    }
    std::printf("running bench_record_screen --seconds %d --no-ffmpeg ...\n", seconds);
    std::fflush(stdout);
    const QString output =
        run(program,
            {QStringLiteral("--seconds"), QString::number(seconds), QStringLiteral("--no-ffmpeg")},
            (seconds + 120) * 1000);
    const QRegularExpression cpu(QStringLiteral("^capstan engine\\s+([0-9.]+)"),
                                 QRegularExpression::MultilineOption);
    const QRegularExpression delay(QStringLiteral("^capstan engine: (.*)$"),
                                   QRegularExpression::MultilineOption);
    const QRegularExpressionMatch cpuMatch = cpu.match(output);
    if (!cpuMatch.hasMatch()) {
        std::printf("bench_record_screen printed no CPU figure:\n%s\n", qPrintable(output));
        return figures;
    }
    figures.ran = true;
    figures.cpuPerSecond = cpuMatch.captured(1).toDouble();
    figures.loopDelay = delay.match(output).captured(1);
    return figures;
}

// The desk's sound server made to look like a machine's: speakers the routing recognises
// (the desk's own sink has a name no machine has) as the default output, and the loopback
// device installed the way a user installs it. Undone by restore().
class DeskSound {
public:
    explicit DeskSound(const QString &installLoopback) : installLoopback_(installLoopback) {}

    bool prepare()
    {
        server_ = pactlInfo(QStringLiteral("Server Name"));
        if (server_.isEmpty()) {
            std::fprintf(stderr, "no sound server answers (PULSE_SERVER=%s)\n",
                         qgetenv("PULSE_SERVER").constData());
            return false;
        }
        previousSink_ = pactlInfo(QStringLiteral("Default Sink"));
        speakersModule_ = pactl({QStringLiteral("load-module"), QStringLiteral("module-null-sink"),
                                 QStringLiteral("sink_name=bench_builtin_out"),
                                 QStringLiteral("sink_properties='device.description=\"Built-in "
                                                "Output\"'")});
        pactl({QStringLiteral("set-default-sink"), QStringLiteral("bench_builtin_out")});
        std::printf("%s\n", qPrintable(run(installLoopback_, {})));
        // A new null sink takes a moment before the server lists it everywhere.
        wait(1000);
        return true;
    }

    void restore()
    {
        run(installLoopback_, {QStringLiteral("--remove")});
        if (!speakersModule_.isEmpty())
            pactl({QStringLiteral("unload-module"), speakersModule_});
        if (!previousSink_.isEmpty())
            pactl({QStringLiteral("set-default-sink"), previousSink_});
    }

    QString server() const { return server_; }

private:
    QString installLoopback_;
    QString server_;
    QString previousSink_;
    QString speakersModule_;
};

// A user's choice in a pop-up: its item selected, then its action, as a click runs it.
void choose(QComboBox *box, int index)
{
    box->setCurrentIndex(index);
    emit box->activated(index);
}

struct DelayFigures {
    int ticks = 0;
    double worstMs = 0;
    double p99Ms = 0;
    double meanMs = 0;
    int over20 = 0;
};

DelayFigures delayFigures(std::vector<double> lateness)
{
    DelayFigures figures;
    if (lateness.empty())
        return figures;
    std::sort(lateness.begin(), lateness.end());
    figures.ticks = int(lateness.size());
    figures.worstMs = lateness.back();
    figures.p99Ms = lateness[std::min(lateness.size() - 1, size_t(0.99 * double(lateness.size())))];
    double sum = 0;
    for (double ms : lateness) {
        sum += ms;
        if (ms > kDelayGoalMs)
            ++figures.over20;
    }
    figures.meanMs = sum / double(lateness.size());
    return figures;
}

void printThreads(const QHash<QString, double> &before, const QHash<QString, double> &after,
                  double processSeconds, double seconds)
{
    std::vector<std::pair<QString, double>> rows;
    double listed = 0;
    for (auto it = after.cbegin(); it != after.cend(); ++it) {
        const double used = it.value() - before.value(it.key());
        listed += used;
        rows.emplace_back(it.key(), used);
    }
    // Threads that ended before the end took their time with them.
    rows.emplace_back(QStringLiteral("(threads that ended, and rounding)"),
                      processSeconds - listed);
    std::sort(rows.begin(), rows.end(),
              [](const auto &a, const auto &b) { return a.second > b.second; });
    std::printf("CPU by thread while recording (CPU s/s):\n");
    for (const auto &[name, used] : rows)
        if (std::abs(used) / seconds >= 0.0005)
            std::printf("  %8.3f  %s\n", used / seconds, qPrintable(name));
}

void printHandlers(const MeasuredApplication &application, double seconds)
{
    struct Row {
        QString what;
        MeasuredApplication::Handler handler;
    };
    std::vector<Row> rows;
    for (auto it = application.handlers().cbegin(); it != application.handlers().cend(); ++it)
        rows.push_back({it.key(), it.value()});
    std::sort(rows.begin(), rows.end(),
              [](const Row &a, const Row &b) { return a.handler.totalMs > b.handler.totalMs; });
    std::printf("interface thread's handlers while recording (events of 0.05 ms or more):\n");
    std::printf("  %10s %8s %7s %8s %9s  %s\n", "total ms", "CPU ms", "count", "ms/s", "worst ms",
                "handler");
    for (size_t i = 0; i < rows.size() && i < 12; ++i)
        std::printf("  %10.1f %8.1f %7d %8.2f %9.2f  %s\n", rows[i].handler.totalMs,
                    rows[i].handler.cpuMs, rows[i].handler.count, rows[i].handler.totalMs / seconds,
                    rows[i].handler.worstMs, qPrintable(rows[i].what));
    std::vector<MeasuredApplication::Single> singles = application.singles();
    std::sort(singles.begin(), singles.end(),
              [](const auto &a, const auto &b) { return a.ms > b.ms; });
    std::vector<std::pair<QString, int>> painted;
    for (auto it = application.painted().cbegin(); it != application.painted().cend(); ++it)
        painted.emplace_back(it.key(), it.value());
    std::sort(painted.begin(), painted.end(),
              [](const auto &a, const auto &b) { return a.second > b.second; });
    std::printf("widgets painted while recording (times):");
    for (const auto &[name, times] : painted)
        std::printf(" %s %d;", qPrintable(name), times);
    std::printf("\n");
    std::printf("longest single events:\n");
    for (size_t i = 0; i < singles.size() && i < 6; ++i)
        std::printf("  %8.2f ms (CPU %.2f ms) at %6.2f s  %s\n", singles[i].ms, singles[i].cpuMs,
                    singles[i].atSeconds, qPrintable(singles[i].what));
}

} // namespace

int main(int argc, char **argv)
{
    const int seconds = benchSeconds(20);
    QTemporaryDir home;
    if (!prepareBenchProgram(home, "bench_ui_record"))
        return 2;

    MeasuredApplication application(argc, argv);
    QApplication::setApplicationName(AppDelegate::CFBundleName);
    QApplication::setOrganizationName(AppDelegate::CFBundleName);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString benchFolder = QCoreApplication::applicationDirPath() + "/../record_screen";
    const QString loadBefore = loadAverage();

    std::printf("bench_ui_record: %d s, whole screen at %d fps with system sound, through the "
                "main window\n",
                seconds, kFps);
    std::fflush(stdout);
    const EngineFigures engine = runRecordScreenBench(benchFolder, seconds);

    DeskSound sound(QStringLiteral(CAPSTAN_INSTALL_LOOPBACK));
    if (!sound.prepare())
        return 2;
    QProcess pattern;
    pattern.start(benchFolder + "/bench_moving_pattern", {QString::number(kFps)});
    if (!pattern.waitForStarted()) {
        std::fprintf(stderr, "cannot start bench_moving_pattern in %s\n", qPrintable(benchFolder));
        sound.restore();
        return 2;
    }
    wait(1500);

    // As main() builds the program.
    Localization::installLanguage(QStringLiteral("en"));
    LinuxPlatform linuxPlatform;
    AppDelegate::installSharedPlatform(linuxPlatform.platform());
    AppDelegate *app = AppDelegate::sharedInstance();
    DesktopWorkspace workspace;
    app->setWorkspace(&workspace);
    HomeMainWindow window;
    app->setWindow(&window);
    app->applicationDidFinishLaunching();
    for (int i = 0; i < 100 && !(window.windowHandle() && window.windowHandle()->isExposed()); ++i)
        wait(50);
    const ScreenInfo screen = linuxPlatform.platform().screens->screens().value(0);

    // The source screen of the whole screen, at the engine bench's rate and bitrate
    // ("Original" quality), with system sound.
    app->fullScreenClicked(VideoTypeFullScreen);
    choose(window.frameItemBox, 1);
    const int fpsIndex = window.fpstemBox->findText(QStringLiteral("%1 fps").arg(kFps));
    if (fpsIndex > 0)
        choose(window.fpstemBox, fpsIndex);
    choose(window.audioItemBox, 1 + int(AudioTypeSystem));
    wait(1500); // the routing's aggregates are listed half a second after they are made

    // The tone swells and fades a little under a second apart, as sound does, so the meter
    // has something to follow. Two processes piped, not a shell: both end with this run.
    QProcess tone, player;
    tone.setStandardOutputProcess(&player);
    tone.start(QStringLiteral("ffmpeg"),
               {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-f"),
                QStringLiteral("lavfi"), QStringLiteral("-i"),
                QStringLiteral("aevalsrc=0.25*sin(2*PI*%1*t)*(0.6+0.4*sin(2*PI*1.3*t))"
                               ":s=44100:d=%2")
                    .arg(kToneHz)
                    .arg(seconds + 30),
                QStringLiteral("-f"), QStringLiteral("s16le"), QStringLiteral("-ac"),
                QStringLiteral("2"), QStringLiteral("-")});
    player.start(QStringLiteral("pacat"),
                 {QStringLiteral("--raw"), QStringLiteral("--format=s16le"),
                  QStringLiteral("--channels=2"), QStringLiteral("--rate=44100")});
    const QString defaultSink = pactlInfo(QStringLiteral("Default Sink"));
    wait(1500); // the meter settles on the tone

    std::printf("screen %dx%d, window %s, sound server \"%s\", default output \"%s\", fps %g\n",
                int(screen.frame.width()), int(screen.frame.height()),
                window.isVisible() ? "shown" : "hidden", qPrintable(sound.server()),
                qPrintable(defaultSink), double(app->fps()));

    // The interface thread's responsiveness, and the level bar seen from it.
    std::vector<double> lateness;
    lateness.reserve(size_t(seconds) * (1000 / kProbeIntervalMs) + 1000);
    float peakLevel = 0;
    int levelTicks = 0;
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QElapsedTimer sinceTick;
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const double late = sinceTick.nsecsElapsed() / 1e6 - kProbeIntervalMs;
        sinceTick.restart();
        lateness.push_back(std::max(0.0, late));
        const float level = window.progressView->progress();
        peakLevel = std::max(peakLevel, level);
        if (level > kLevelFloor)
            ++levelTicks;
    });

    const MachineTimes machineBefore = machineTimes();
    const QHash<QString, double> threadsBefore = threadCpuSeconds();
    rusage before{}, started{}, stopping{}, after{};
    getrusage(RUSAGE_SELF, &before);
    QElapsedTimer recorded;
    recorded.start();
    sinceTick.start();
    probe.start(kProbeIntervalMs);
    application.startMeasuring(&probe);

    QElapsedTimer toggle;
    toggle.start();
    app->recordScreenClicked();
    const double startMs = toggle.nsecsElapsed() / 1e6;
    // The probe's next tick carries the toggle's own time; the ticks after it are the
    // recording going on.
    const size_t steadyFrom = lateness.size() + 1;
    getrusage(RUSAGE_SELF, &started);
    TNRecordManager &manager = *app->recordManager();
    if (manager.status() != RecordStatusRecording) {
        std::fprintf(stderr, "the record toggle did not start a recording (status %llu)\n",
                     static_cast<unsigned long long>(manager.status()));
        for (QProcess *process : {&tone, &player, &pattern}) {
            process->kill();
            process->waitForFinished();
        }
        sound.restore();
        return 1;
    }
    const QString path = app->outputPath();
    wait(seconds * 1000);

    application.stopMeasuring();
    probe.stop();
    const double recordedSeconds = recorded.nsecsElapsed() / 1e9;
    getrusage(RUSAGE_SELF, &stopping);
    const MachineTimes machineAfter = machineTimes();
    const QHash<QString, double> threadsAfter = threadCpuSeconds();
    toggle.restart();
    app->recordScreenClicked();
    const double stopMs = toggle.nsecsElapsed() / 1e6;
    getrusage(RUSAGE_SELF, &after);
    const QString loadAfter = loadAverage();

    for (QProcess *process : {&tone, &player, &pattern}) {
        process->kill();
        process->waitForFinished();
    }
    app->applicationWillTerminate();
    sound.restore();

    const double cpu = (cpuSeconds(stopping) - cpuSeconds(before)) / recordedSeconds;
    const double startCpuMs = (cpuSeconds(started) - cpuSeconds(before)) * 1000;
    const double stopCpuMs = (cpuSeconds(after) - cpuSeconds(stopping)) * 1000;
    const double jiffies = machineAfter.total - machineBefore.total;
    const double cores = QThread::idealThreadCount();
    const double machineBusy =
        jiffies > 0 ? (machineAfter.busy - machineBefore.busy) / jiffies * cores : 0;

    const ProbedVideo video = MediaProbe::probeVideo(path);
    const ProbedAudio audio = MediaProbe::probeAudio(path);
    const std::vector<float> samples = MediaProbe::monoSamples(path);
    const double toneAmplitude =
        audio.ok ? MediaProbe::toneAmplitude(samples, audio.sampleRate, kToneHz) : 0;
    const int expected = int(recordedSeconds * double(app->fps()) + 0.5);
    const DelayFigures delay = delayFigures(lateness);
    const DelayFigures steady = delayFigures(std::vector<double>(
        lateness.begin() + qsizetype(std::min(steadyFrom, lateness.size())), lateness.end()));

    std::printf("\nmachine: %d cores, load average %s before, %s after; busy %.2f of %d cores "
                "while recording (this process %.2f)\n",
                int(cores), qPrintable(loadBefore), qPrintable(loadAfter), machineBusy, int(cores),
                cpu);
    std::printf("file: %s\n", qPrintable(QFileInfo(path).fileName()));
    std::printf("  video: %s %dx%d, %d frames of %d expected (%.1f %%), %.2f s (recorded %.2f s)\n",
                qPrintable(video.codec), video.width, video.height, video.frames, expected,
                expected ? 100.0 * video.frames / expected : 0.0, video.duration, recordedSeconds);
    std::printf("  sound: %s %d Hz %d ch, %.2f s, %d Hz tone at amplitude %.3f\n",
                qPrintable(audio.codec), audio.sampleRate, audio.channels, audio.duration, kToneHz,
                toneAmplitude);
    std::printf("level bar: peak %.3f, above its floor (%.3f) in %.0f %% of the probe's ticks%s\n",
                double(peakLevel), double(kLevelFloor),
                delay.ticks ? 100.0 * levelTicks / delay.ticks : 0.0,
                levelTicks == 0 ? ": it did not move" : "");

    std::printf("\n%-34s %8s\n", "CPU seconds per second", "CPU s/s");
    std::printf("%-34s %8.3f\n", "capstan, whole program", cpu);
    if (engine.ran) {
        const double difference = cpu - engine.cpuPerSecond;
        std::printf("%-34s %8.3f\n", "bench_record_screen, engine only", engine.cpuPerSecond);
        std::printf("%-34s %+8.3f  goal: within %.2f: %s\n", "difference", difference, kCpuGoal,
                    difference <= kCpuGoal ? "met" : "missed");
        if (!engine.loopDelay.isEmpty())
            std::printf("bench_record_screen: %s\n", qPrintable(engine.loopDelay));
    }
    std::printf("\nevent-loop delay, a %d ms timer's lateness (goal: worst under %.0f ms)\n",
                kProbeIntervalMs, kDelayGoalMs);
    std::printf("  %-26s %6s %9s %9s %9s %8s  %s\n", "", "ticks", "worst ms", "p99 ms", "mean ms",
                "> 20 ms", "goal");
    for (const auto &[name, figures] :
         {std::pair<const char *, DelayFigures>{"from the start toggle", delay},
          std::pair<const char *, DelayFigures>{"after the start toggle", steady}})
        std::printf("  %-26s %6d %9.1f %9.2f %9.2f %8d  %s\n", name, figures.ticks, figures.worstMs,
                    figures.p99Ms, figures.meanMs, figures.over20,
                    figures.worstMs < kDelayGoalMs ? "met" : "missed");
    std::printf("record toggle: start held the interface thread %.1f ms (CPU %.1f ms), stop %.1f "
                "ms (CPU %.1f ms; closing the file and opening the file list)\n",
                startMs, startCpuMs, stopMs, stopCpuMs);
    printThreads(threadsBefore, threadsAfter, cpu * recordedSeconds, recordedSeconds);
    printHandlers(application, recordedSeconds);
    return 0;
}
