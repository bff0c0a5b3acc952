#include "AppDelegate.h"
#include "FakePlatform.h"
#include "RecordingMediaEncoder.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace {

class OutputPathsTest : public testing::Test {
protected:
    void SetUp() override
    {
        RecordingMediaEncoder::reset();
        // 2026-01-31 23:59:59 local time.
        fake.clock.time =
            QDateTime(QDate(2026, 1, 31), QTime(23, 59, 59)).toSecsSinceEpoch() + 0.25;
        delegate = AppDelegate::create(fake.platform());
    }
    FakePlatform fake;
    std::unique_ptr<AppDelegate> delegate;
};

TEST_F(OutputPathsTest, RecordingPathsInTheMoviesFolder)
{
    const QString folder = fake.folders.movies + "/Capstan";
    EXPECT_EQ(delegate->createoutputPath(true), folder + "/20260131_235959.mp4");
    EXPECT_EQ(delegate->createoutputPath(false), folder + "/20260131_235959.mp3");
    delegate->setVideoTypeBoxIndex(4);
    delegate->setAudioExtensionIndex(2);
    EXPECT_TRUE(delegate->createoutputPath(true).endsWith(".avi"));
    EXPECT_TRUE(delegate->createoutputPath(false).endsWith(".m4a"));

    // A deleted output folder comes back at the next start.
    ASSERT_TRUE(QDir(folder).removeRecursively());
    delegate->createoutputPath(true);
    EXPECT_TRUE(QFileInfo(folder).isDir());
}

TEST_F(OutputPathsTest, PlistPathLeavesAnEmptyFile)
{
    const QString path = delegate->plistPath();
    EXPECT_EQ(path, fake.folders.caches + "/org.capstan.Capstan/filelist.plist");
    EXPECT_TRUE(QFileInfo(path).isFile());
    EXPECT_EQ(QFileInfo(path).size(), 0);
}

TEST_F(OutputPathsTest, DateTexts)
{
    EXPECT_EQ(AppDelegate::dateToString(QDateTime(QDate(2026, 1, 31), QTime(0, 0, 0))),
              "2026/01/31 00:00:00");
    EXPECT_EQ(AppDelegate::dateToString(QDateTime(QDate(2026, 12, 1), QTime(23, 5, 9))),
              "2026/12/01 23:05:09");
    EXPECT_EQ(AppDelegate::timeFromString(3 * 3600 + 62), "03:01:02");
    EXPECT_EQ(AppDelegate::timeFrom_String(3 * 3600 + 62), "03时01分02秒");
    EXPECT_EQ(AppDelegate::timeFrom_String(62), "01分02秒");
}

TEST_F(OutputPathsTest, FreeSpaceTexts)
{
    struct Case {
        qint64 freeBytes;
        QString text;
    };
    const Case cases[] = {
        {1'000'000'000, "1024.00 MB"}, // exactly 1.0 is not above 1.0
        {500'000'000, "512.00 MB"},
        {1'500'000'000, "1.50 G"},
        {0, "0.00 MB"},
    };
    for (const Case &c : cases) {
        fake.folders.attributes.freeSize = c.freeBytes;
        delegate->generateMemoryInfo();
        EXPECT_EQ(delegate->systemFreeSpace(), c.text);
    }
    // The caches folder is asked, not the movies folder.
    EXPECT_EQ(fake.folders.askedPaths.last(), fake.folders.caches);
    EXPECT_EQ(delegate->generateNumberFromValue(1'000'000'000ULL), "0.93 GB Free");
    EXPECT_EQ(delegate->generateNumberFromValue(999'999'999ULL), "954 MB Free");
}

TEST_F(OutputPathsTest, PermissionChecksFollowStatusAndVersion)
{
    FakePermissions &p = fake.permissions;
    p.videoStatus = 2;
    EXPECT_FALSE(delegate->checkCapture(false));
    EXPECT_TRUE(fake.alerts.messages.isEmpty());
    EXPECT_FALSE(delegate->checkCapture(true));
    EXPECT_EQ(fake.alerts.messages.size(), 1);
    p.audioStatus = 0;
    EXPECT_FALSE(delegate->checkCaptureAudio());
    EXPECT_EQ(p.requests, QList<MediaType>({MediaType::Video})); // asks for the camera
    p.audioStatus = 7;
    EXPECT_TRUE(delegate->checkCaptureAudio());
    fake.version.version = {10, 13, 6};
    EXPECT_TRUE(delegate->checkCapture(true));
}

} // namespace
