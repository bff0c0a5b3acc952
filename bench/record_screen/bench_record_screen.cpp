// bench_record_screen: records a screen of moving content through the recording engine
// (cursor and a text watermark on) and then, on the same display, with
//   ffmpeg -f x11grab -framerate FPS ... -c:v libx264 -preset P
// and prints for both: CPU seconds per recorded second, frames written against frames
// expected, late frames (a step of more than 1.5 frame intervals) and peak memory. For the
// engine also: the interface thread's worst event-loop delay while recording (a 10 ms
// timer's lateness) and the time stopRecording takes to close the file.
//
// Run it on a desktop of one 1920x1080 monitor, e.g.
//   DESK_SPLIT=0 DESK_STATE=/tmp/capstan-bench scripts/test-desktop start
// Options: --seconds N (20), --fps N (30), --preset P (ultrafast), --no-ffmpeg.
#include "../ProcessFigures.h"
#include "AppDelegate.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "ScreenCatalog.h"

#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <cmath>
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Figures {
    double cpuPerSecond = 0;
    int frames = 0;
    int expected = 0;
    int late = 0;
    double peakMegabytes = 0;
    double worstLoopDelayMs = 0;
    double stopMs = 0;
};

void countFrames(const QString &path, int fps, Figures &figures)
{
    const ProbedVideo video = MediaProbe::probeVideo(path);
    figures.frames = video.frames;
    for (int i = 1; i < video.frameTimes.size(); ++i)
        if (video.frameTimes[i] - video.frameTimes[i - 1] > 1.5 / fps)
            ++figures.late;
}

void wait(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

Figures recordWithEngine(AppDelegate &app, const ScreenInfo &screen, const QString &path,
                         int seconds, int fps)
{
    TNRecordManager &manager = *app.recordManager();
    app.setOutputPath(path);
    app.setFps(float(fps));
    app.setIsShowMouse(true);
    app.setWatermarkImage(app.saveImageWithText(QStringLiteral("Capstan benchmark")));
    app.setWatermarkType(0);
    EncodeManager &encoder = manager.encodeManager();
    encoder.setFps(float(fps));
    encoder.setVideoBitrate(8000);
    encoder.setImageSize(screen.frame.size());
    manager.setRecordAudioType(AudioTypeNone);
    manager.setRecordVideoType(VideoTypeFullScreen);
    manager.setScreen(screen);
    manager.setCaptureRect(QRectF());

    Figures figures;
    // The interface thread's responsiveness: how late a 10 ms timer fires at worst.
    QTimer probe;
    probe.setTimerType(Qt::PreciseTimer);
    QElapsedTimer sinceTick;
    QObject::connect(&probe, &QTimer::timeout, [&] {
        const double late = sinceTick.nsecsElapsed() / 1e6 - 10.0;
        figures.worstLoopDelayMs = std::max(figures.worstLoopDelayMs, late);
        sinceTick.restart();
    });

    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    // The wait can overrun; the recording lasts what the clock says.
    QElapsedTimer recorded;
    recorded.start();
    manager.startRecording();
    sinceTick.start();
    probe.start(10);
    wait(seconds * 1000);
    probe.stop();
    QElapsedTimer stopping;
    stopping.start();
    manager.stopRecording();
    figures.stopMs = stopping.nsecsElapsed() / 1e6;
    const double recordedSeconds = recorded.elapsed() / 1000.0;
    manager.captrueScreenInputEnable(false);
    getrusage(RUSAGE_SELF, &after);

    figures.cpuPerSecond = (cpuSeconds(after) - cpuSeconds(before)) / recordedSeconds;
    figures.expected = int(std::lround(recordedSeconds * fps));
    figures.peakMegabytes = statusKilobytes("VmHWM") / 1024.0;
    countFrames(path, fps, figures);
    return figures;
}

Figures recordWithFfmpeg(const ScreenInfo &screen, const QString &path, int seconds, int fps,
                         const QString &preset)
{
    const QByteArray size = QStringLiteral("%1x%2")
                                .arg(int(screen.frame.width()))
                                .arg(int(screen.frame.height()))
                                .toUtf8();
    const QByteArray display = qgetenv("DISPLAY") + "+0,0";
    const QByteArray duration = QByteArray::number(seconds);
    const QByteArray rate = QByteArray::number(fps);
    const QByteArray presetName = preset.toUtf8();
    const QByteArray output = path.toUtf8();
    Figures figures;
    const pid_t child = fork();
    if (child == 0) {
        execlp("ffmpeg", "ffmpeg", "-v", "error", "-y", "-f", "x11grab", "-framerate",
               rate.constData(), "-video_size", size.constData(), "-i", display.constData(), "-t",
               duration.constData(), "-c:v", "libx264", "-preset", presetName.constData(),
               output.constData(), static_cast<char *>(nullptr));
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "ffmpeg failed (status %d)\n", status);
        return figures;
    }
    figures.cpuPerSecond = cpuSeconds(usage) / seconds;
    figures.expected = seconds * fps;
    figures.peakMegabytes = double(usage.ru_maxrss) / 1024.0;
    countFrames(path, fps, figures);
    return figures;
}

void print(const char *name, const Figures &f)
{
    std::printf("%-22s %10.3f %8d / %-6d %6.1f %% %6d %10.1f\n", name, f.cpuPerSecond, f.frames,
                f.expected, f.expected ? 100.0 * f.frames / f.expected : 0.0, f.late,
                f.peakMegabytes);
}

} // namespace

int main(int argc, char **argv)
{
    int seconds = 20;
    int fps = 30;
    QString preset = QStringLiteral("ultrafast");
    bool withFfmpeg = true;
    for (int i = 1; i < argc; ++i) {
        const QByteArray arg = argv[i];
        if (arg == "--seconds" && i + 1 < argc)
            seconds = std::max(1, atoi(argv[++i]));
        else if (arg == "--fps" && i + 1 < argc)
            fps = std::max(1, atoi(argv[++i]));
        else if (arg == "--preset" && i + 1 < argc)
            preset = QString::fromUtf8(argv[++i]);
        else if (arg == "--no-ffmpeg")
            withFfmpeg = false;
    }
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "bench_record_screen needs an X display (scripts/test-desktop)\n");
        return 2;
    }
    qputenv("MEDIAENCODER_X264_PRESET", preset.toUtf8());
    QGuiApplication application(argc, argv);
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());

    QProcess pattern;
    pattern.start(QCoreApplication::applicationDirPath() + "/bench_moving_pattern",
                  {QString::number(fps)});
    if (!pattern.waitForStarted()) {
        std::fprintf(stderr, "cannot start bench_moving_pattern\n");
        return 2;
    }
    wait(1500);

    LinuxPlatform platform;
    std::unique_ptr<AppDelegate> app = AppDelegate::create(platform.platform());
    const ScreenInfo screen = platform.platform().screens->screens().value(0);
    std::printf("screen %dx%d, %d s at %d fps, preset %s\n", int(screen.frame.width()),
                int(screen.frame.height()), seconds, fps, qPrintable(preset));
    const Figures ours = recordWithEngine(*app, screen, home.filePath("engine.mp4"), seconds, fps);
    Figures theirs;
    if (withFfmpeg)
        theirs = recordWithFfmpeg(screen, home.filePath("ffmpeg.mp4"), seconds, fps, preset);
    pattern.kill();
    pattern.waitForFinished();

    std::printf("%-22s %10s %17s %8s %6s %10s\n", "recorder", "CPU s/s", "frames", "written",
                "late", "peak MB");
    print("capstan engine", ours);
    std::printf("capstan engine: worst event-loop delay %.1f ms, stop to closed file %.0f ms\n",
                ours.worstLoopDelayMs, ours.stopMs);
    if (withFfmpeg) {
        print("ffmpeg x11grab", theirs);
        if (theirs.cpuPerSecond > 0)
            std::printf("ours/ffmpeg CPU: %.2f\n", ours.cpuPerSecond / theirs.cpuPerSecond);
    }
    return 0;
}
