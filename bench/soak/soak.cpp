// bench_soak: a long recording of the whole 1080p screen (moving content) with the
// computer's sound, as a user's long take would be. Every minute a window flashes while a
// click plays; each minute the process's resident memory, open files and threads are
// read. At the end it prints the memory, file and thread figures per minute and, for the
// first and the last flash, how far after the flash the click is heard, and checks:
// memory at the end within 5 % of the start's, no more open files or threads than after the
// first minute, the last click within 40 ms of its flash. The start's memory is the larger
// of the first two minutes': the encoder's picture pool grows to its working size (bounded
// by its queue) at the first moments the machine is busy, which is no growth.
//
// By hand (make soak), on a desktop of one 1920x1080 monitor; SOAK_MINUTES sets the
// length (30 by default).
#include "../ProcessFigures.h"
#include "AppDelegate.h"
#include "ClickAndFlash.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "SoundDeskTest.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <cstdio>
#include <dirent.h>

namespace {

using clickandflash::FlashWindow;

constexpr int kFps = 30;
constexpr QRect kFlash(860, 440, 200, 200);

int entriesIn(const char *folder)
{
    DIR *dir = opendir(folder);
    if (!dir)
        return -1;
    int count = 0;
    while (readdir(dir))
        ++count;
    closedir(dir);
    return count - 2; // "." and ".."
}

struct Minute {
    double rssMegabytes;
    int openFiles;
    int threads;
};

Minute readFigures()
{
    return {statusKilobytes("VmRSS") / 1024.0, entriesIn("/proc/self/fd"),
            int(statusKilobytes("Threads"))};
}

QString run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(300000);
    if (output)
        *output = process.readAllStandardOutput();
    return QString::fromUtf8(process.readAllStandardError());
}

// When the flash window's centre turns bright in the recording, searching a few seconds
// from `from`; the frames' own times, read through ffprobe's signalstats.
double flashSeenAfter(const QString &path, double from)
{
    QByteArray out;
    const QString graph =
        QStringLiteral("movie=%1:seek_point=%2,trim=start=%2:duration=4,crop=16:16:%3:%4,"
                       "signalstats")
            .arg(path)
            .arg(from, 0, 'f', 3)
            .arg(kFlash.center().x() - 8)
            .arg(kFlash.center().y() - 8);
    run("ffprobe",
        {"-v", "error", "-f", "lavfi", "-i", graph, "-show_entries",
         "frame=pts_time:frame_tags=lavfi.signalstats.YAVG", "-of", "csv=p=0"},
        &out);
    for (const QByteArray &line : out.split('\n')) {
        const QList<QByteArray> fields = line.split(',');
        if (fields.size() >= 2 && fields[1].toDouble() > 160)
            return fields[0].toDouble();
    }
    return -1;
}

// When the click is heard, searching a few seconds from `from`.
double clickHeardAfter(const QString &path, double from)
{
    QByteArray out;
    run("ffmpeg",
        {"-v", "error", "-ss", QString::number(from, 'f', 3), "-t", "4", "-i", path, "-vn", "-ac",
         "1", "-ar", QString::number(clickandflash::kRate), "-f", "f32le", "-"},
        &out);
    std::vector<float> samples(size_t(out.size()) / sizeof(float));
    std::memcpy(samples.data(), out.constData(), samples.size() * sizeof(float));
    const std::vector<double> onsets =
        clickandflash::clickOnsets(samples, clickandflash::kRate, from);
    return onsets.empty() ? -1 : onsets.front();
}

class Soak : public SoundDeskTest {};

TEST_F(Soak, ALongTakeKeepsItsMemoryFilesThreadsAndSync)
{
    bool given = false;
    const int minutes = std::max(2, qEnvironmentVariableIntValue("SOAK_MINUTES", &given));
    const int totalMinutes = given ? minutes : 30;
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());
    const QString path = QDir(home.path()).filePath("soak.mp4");

    QProcess pattern;
    pattern.start(QCoreApplication::applicationDirPath() + "/../record_screen/bench_moving_pattern",
                  {QString::number(kFps)});
    ASSERT_TRUE(pattern.waitForStarted());
    QTest::qWait(1500);
    FlashWindow window;
    window.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    window.setGeometry(kFlash);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window, 5000));
    QProcess::execute("xdotool", {"windowmove", QString::number(window.winId()),
                                  QString::number(kFlash.x()), QString::number(kFlash.y())});

    LinuxPlatform platform;
    std::unique_ptr<AppDelegate> app = AppDelegate::create(platform.platform());
    TNRecordManager &manager = *app->recordManager();
    manager.setRecordVideoType(VideoTypeFullScreen);
    QTest::qWait(700);
    app->audioChangeAction(1); // the computer's sound
    QProcess speaker;
    speaker.start("pacat", {"--raw", "--format=s16le", "--channels=2", "--rate=44100",
                            "--latency-msec=20", "--device=MR-OutputDevice"});
    ASSERT_TRUE(speaker.waitForStarted());
    QTest::qWait(700);

    const ScreenInfo screen = platform.platform().screens->screens().value(0);
    app->setFps(kFps);
    app->setOutputPath(path);
    EncodeManager &encoder = manager.encodeManager();
    encoder.setFps(kFps);
    encoder.setVideoBitrate(8000);
    encoder.setImageSize(screen.frame.size());
    manager.setScreen(screen);
    manager.setCaptureRect(QRectF());
    manager.startRecording();

    QElapsedTimer clock;
    clock.start();
    std::vector<double> playedAt;
    std::vector<Minute> figures;
    for (int minute = 0; minute < totalMinutes; ++minute) {
        // The flash 10 s into each minute; the figures at its end.
        QTest::qWait(int(minute * 60000 + 10000 - clock.elapsed()));
        speaker.write(clickandflash::click());
        window.setLit(true);
        playedAt.push_back(clock.elapsed() / 1000.0);
        QTest::qWait(400);
        window.setLit(false);
        QTest::qWait(int((minute + 1) * 60000 - clock.elapsed()));
        figures.push_back(readFigures());
        std::printf("minute %2d: %7.1f MB resident, %3d open files, %3d threads\n", minute + 1,
                    figures.back().rssMegabytes, figures.back().openFiles, figures.back().threads);
        std::fflush(stdout);
    }
    manager.stopRecording();
    manager.captrueScreenInputEnable(false);
    speaker.closeWriteChannel();
    speaker.waitForFinished(5000);
    pattern.kill();
    pattern.waitForFinished();
    app->applicationWillTerminate();
    pactl({"set-default-sink", "builtin_out"});
    pactl({"set-default-source", "builtin_mic"});

    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    std::printf("recorded %.1f s, %d frames (%.1f %% of %d)\n", video.duration, video.frames,
                100.0 * video.frames / (video.duration * kFps), int(video.duration * kFps));
    std::vector<double> offsets;
    for (const double at : {playedAt.front(), playedAt.back()}) {
        // Search from a second before the moment the flash was played.
        const double seen = flashSeenAfter(path, at - 1.0);
        const double heard = clickHeardAfter(path, at - 1.0);
        std::printf("played at %7.2f s: seen at %7.3f s, heard at %7.3f s: sound %+4.0f ms\n", at,
                    seen, heard, (heard - seen) * 1000);
        ASSERT_GE(seen, 0);
        ASSERT_GE(heard, 0);
        offsets.push_back(heard - seen);
    }
    const Minute &first = figures.front();
    const double startMegabytes = std::max(
        first.rssMegabytes, figures.at(std::min<size_t>(1, figures.size() - 1)).rssMegabytes);
    const Minute &last = figures.back();
    EXPECT_LT(last.rssMegabytes, startMegabytes * 1.05);
    EXPECT_LE(last.openFiles, first.openFiles);
    EXPECT_LE(last.threads, first.threads);
    EXPECT_LT(std::fabs(offsets.back()), 0.040);
}

} // namespace
