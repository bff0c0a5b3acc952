// A recording cut off by SIGKILL still plays up to its last fragment.
#include "MediaProbe.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

#include <csignal>

TEST(CrashSafety, KilledRecordingPlaysToItsLastFragment)
{
    QTemporaryDir dir;
    const QString path = QDir(dir.path()).filePath("killed.mp4");
    QProcess child;
    child.start(RECORD_UNTIL_KILLED, {path});
    ASSERT_TRUE(child.waitForStarted());
    // Three seconds pushed, and a little for the encoder to catch up: the fragments of
    // the first two are on disk, however slowly the child started.
    QByteArray said;
    QElapsedTimer waited;
    waited.start();
    while (!said.split('\n').contains("3") && waited.elapsed() < 30000) {
        child.waitForReadyRead(1000);
        said += child.readAllStandardOutput();
    }
    ASSERT_TRUE(said.split('\n').contains("3")) << said.constData();
    QThread::msleep(500);
    ::kill(pid_t(child.processId()), SIGKILL);
    child.waitForFinished();
    ASSERT_EQ(child.exitStatus(), QProcess::CrashExit);

    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    EXPECT_EQ(video.width, 320);
    // Fragments close every second: at most about one is lost.
    EXPECT_GE(video.frameTimes.last(), 1.5);
    EXPECT_GE(MediaProbe::probeAudio(path).duration, 1.5);
    EXPECT_TRUE(MediaProbe::decodesCleanly(path));
}
