#include "RecordingList.h"
#include "FakePorts.h"
#include "LogCapture.h"
#include "QDBookmark.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

class RecordingListTest : public testing::Test {
protected:
    void SetUp() override
    {
        path = dir.filePath("filelist.plist");
        QFile empty(path);
        ASSERT_TRUE(empty.open(QIODevice::WriteOnly)); // as plistPath leaves it
    }
    void writeRaw(const QByteArray &data)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(data);
    }
    QTemporaryDir dir;
    QString path;
};

TEST_F(RecordingListTest, NewestFirstWithTheRightKeys)
{
    ASSERT_TRUE(addRecordToList(
        path, RecordingRecord::movie("/v/a.mp4", 12.5f, 3000000.0f, "2026/01/31 23:59:59", false)));
    EXPECT_EQ(RecordingList::read(path).count(), 1);
    ASSERT_TRUE(addRecordToList(
        path, RecordingRecord::screenshot("/v/b.png", 4096, "2026/02/01 00:00:01")));
    ASSERT_TRUE(addRecordToList(
        path, RecordingRecord::movie("/v/c.mp3", 3.0f, 48000.0f, "2026/02/01 00:00:02", true)));
    const RecordingList list = RecordingList::read(path);
    ASSERT_EQ(list.count(), 3);
    EXPECT_EQ(list.pathAt(0), "/v/c.mp3");
    EXPECT_EQ(list.pathAt(2), "/v/a.mp4");

    const QVariantMap movie = list.recordAt(2);
    EXPECT_EQ(movie.value("name"), "a.mp4");
    EXPECT_DOUBLE_EQ(movie.value("duration").toDouble(), 12.5);
    EXPECT_DOUBLE_EQ(movie.value("size").toDouble(), 3000000.0);
    EXPECT_EQ(movie.value("isVideo").toInt(), 1);
    EXPECT_FALSE(movie.contains("isImage"));
    EXPECT_FALSE(list.isImageAt(2));
    EXPECT_EQ(list.recordAt(0).value("isVideo").toInt(), 0); // sound alone

    const QVariantMap shot = list.recordAt(1);
    EXPECT_TRUE(list.isImageAt(1));
    EXPECT_FALSE(shot.contains("isVideo"));
    EXPECT_EQ(shot.value("size").toULongLong(), 4096u);
    EXPECT_EQ(shot.value("duration").toULongLong(), 0u);
}

TEST_F(RecordingListTest, RemovalTakesEveryRecordOfThePath)
{
    for (const char *p : {"/v/x.mp4", "/v/y.mp4", "/v/x.mp4", "/v/z.mp4"})
        addRecordToList(path, RecordingRecord::movie(p, 1, 1, "d", false));
    RecordingList list = RecordingList::read(path);
    EXPECT_EQ(list.removeRecordsWithPath("/v/x.mp4"), 2);
    ASSERT_TRUE(list.replaceFile(path));
    const RecordingList reread = RecordingList::read(path);
    ASSERT_EQ(reread.count(), 2);
    EXPECT_EQ(reread.pathAt(0), "/v/z.mp4");
    EXPECT_EQ(reread.pathAt(1), "/v/y.mp4");
}

TEST_F(RecordingListTest, UnreadableFilesStartANewList)
{
    for (const QByteArray &junk : {QByteArray(), QByteArray("not a plist \x01\x02"),
                                   QByteArray("<?xml version=\"1.0\"?><plist><dict/></plist>"),
                                   QByteArray("<plist><array><dict><key>path</key>")}) {
        writeRaw(junk);
        EXPECT_EQ(RecordingList::read(path).count(), 0);
        ASSERT_TRUE(addRecordToList(path, RecordingRecord::movie("/v/n.mp4", 1, 1, "d", false)));
        EXPECT_EQ(RecordingList::read(path).count(), 1);
    }
    EXPECT_EQ(RecordingList::read(dir.filePath("missing.plist")).count(), 0);
}

TEST_F(RecordingListTest, FailedWriteLogsAndLosesTheList)
{
    addRecordToList(path, RecordingRecord::movie("/v/a.mp4", 1, 1, "d", false));
    const QString blocked = dir.filePath("no-such-folder/filelist.plist");
    LogCapture log;
    EXPECT_FALSE(addRecordToList(blocked, RecordingRecord::movie("/v/b.mp4", 1, 1, "d", false)));
    EXPECT_TRUE(log.contains("存储数据失败"));
}

TEST_F(RecordingListTest, AnotherPlistReaderReadsTheRecords)
{
    const QString plistutil = QStandardPaths::findExecutable("plistutil");
    if (plistutil.isEmpty())
        GTEST_SKIP() << "plistutil (libplist-utils) is not installed";
    addRecordToList(
        path, RecordingRecord::movie("/v/ü 1.mp4", 2.5f, 100.0f, "2026/01/01 00:00:00", false));
    // Through the other reader's binary form and back, so it must have parsed every field.
    const QString binary = dir.filePath("filelist.bin");
    QProcess tool;
    tool.start(plistutil, {"-i", path, "-o", binary, "-f", "bin"});
    ASSERT_TRUE(tool.waitForFinished(10000));
    ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().constData();
    tool.start(plistutil, {"-i", binary, "-f", "xml"});
    ASSERT_TRUE(tool.waitForFinished(10000));
    ASSERT_EQ(tool.exitCode(), 0) << tool.readAllStandardError().constData();
    const QString out = QString::fromUtf8(tool.readAllStandardOutput());
    EXPECT_TRUE(out.contains("/v/ü 1.mp4")) << qPrintable(out);
    EXPECT_TRUE(out.contains("isVideo"));
    EXPECT_TRUE(out.contains("2026/01/01 00:00:00"));
    EXPECT_EQ(RecordingList::read(binary).pathAt(0), "/v/ü 1.mp4");
}

TEST(QDBookmark, KeysAreStableHashesOfThePath)
{
    // FNV-1a 64 of the empty string is its offset basis.
    EXPECT_EQ(QDBookmark::hash(""), 14695981039346656037ULL);
    EXPECT_EQ(QDBookmark::keyForPath("a"), "Access:" + QString::number(0xaf63dc4c8601ec8cULL));
    EXPECT_NE(QDBookmark::keyForPath("/a/b.png"), QDBookmark::keyForPath("/a/c.png"));
}

TEST(QDBookmark, SaveStartStopRemove)
{
    QTemporaryDir dir;
    const QString image = dir.filePath("mark.png");
    FakeUserDefaults defaults;
    QDBookmark bookmarks(defaults);
    EXPECT_FALSE(bookmarks.saveOpenFileToBookmarkWithFilePath(image)); // no file yet
    EXPECT_FALSE(bookmarks.BookmarkStartAccessingSecurityScopedResourceWithFilePath(image));
    EXPECT_TRUE(defaults.keys().isEmpty());

    QFile file(image);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_TRUE(bookmarks.saveOpenFileToBookmarkWithFilePath(image));
    EXPECT_EQ(defaults.synchronizeCount(), 1);
    EXPECT_TRUE(bookmarks.BookmarkStartAccessingSecurityScopedResourceWithFilePath(image));
    EXPECT_FALSE(bookmarks.BookmarkStopAccessingSecurityScopedResourceWithFilePath(image));

    QFile::remove(image); // the picture went away behind the program's back
    EXPECT_FALSE(bookmarks.BookmarkStartAccessingSecurityScopedResourceWithFilePath(image));
    EXPECT_TRUE(bookmarks.removeFileBookmarkInfoWithFilePath(image));
    EXPECT_FALSE(bookmarks.removeFileBookmarkInfoWithFilePath(image));
}

} // namespace
