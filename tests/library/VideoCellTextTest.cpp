#include "VideoCellText.h"
#include "RecordingList.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

TEST(VideoCellTextTest, DurationIsTruncatedToWholeSeconds)
{
    const struct {
        double seconds;
        const char *text;
    } cases[] = {
        {3725.4, "01:02:05"}, {0, "00:00:00"},
        {59.999, "00:00:59"}, // truncated, never rounded up
        {3599.9, "00:59:59"}, {3600, "01:00:00"},
        {86399, "23:59:59"},  {360000, "100:00:00"}, // hours are not capped at two digits
        {-5, "00:00:00"},     {std::numeric_limits<double>::quiet_NaN(), "00:00:00"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(VideoCellText::durationText(c.seconds), c.text) << c.seconds;
}

TEST(VideoCellTextTest, SizeIsWholeBytesInMillions)
{
    const struct {
        double bytes;
        const char *text;
    } cases[] = {
        {1.5e6, "1.50 M"},
        {0, "0.00 M"},
        {4999, "0.00 M"},
        {1999999.9, "2.00 M"}, // the whole part, 1999999, rounds at the second decimal
        {1234567, "1.23 M"},
        {double(123456789.0f), "123.46 M"}, // stored through a 32-bit float: 123456792
        {-1, "0.00 M"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(VideoCellText::sizeText(c.bytes), c.text) << c.bytes;
}

// The texts from records as the list file gives them back: reals for a movie, unsigned
// integers for a screenshot.
TEST(VideoCellTextTest, TextsOfStoredRecords)
{
    QTemporaryDir dir;
    const QString plist = dir.filePath("filelist.plist");
    ASSERT_TRUE(addRecordToList(
        plist, RecordingRecord::movie("/v/a.mp4", 3725.4f, 1.5e6f, "2026/03/01 10:00:00", false)));
    ASSERT_TRUE(addRecordToList(
        plist, RecordingRecord::screenshot("/v/b.png", 2500000, "2026/03/01 10:00:01")));
    const RecordingList list = RecordingList::read(plist);
    ASSERT_EQ(list.count(), 2);

    const QVariantMap shot = list.recordAt(0);
    EXPECT_EQ(VideoCellText::nameText(shot), "b.png");
    EXPECT_EQ(VideoCellText::durationText(shot), "00:00:00");
    EXPECT_EQ(VideoCellText::sizeText(shot), "2.50 M");
    EXPECT_EQ(VideoCellText::dateText(shot), "2026/03/01 10:00:01");
    EXPECT_TRUE(VideoCellText::isImage(shot));

    const QVariantMap movie = list.recordAt(1);
    EXPECT_EQ(VideoCellText::nameText(movie), "a.mp4");
    EXPECT_EQ(VideoCellText::durationText(movie), "01:02:05");
    EXPECT_EQ(VideoCellText::sizeText(movie), "1.50 M");
    EXPECT_FALSE(VideoCellText::isImage(movie));

    // A record without its keys shows zeros and empty texts.
    const QVariantMap empty;
    EXPECT_EQ(VideoCellText::durationText(empty), "00:00:00");
    EXPECT_EQ(VideoCellText::sizeText(empty), "0.00 M");
    EXPECT_EQ(VideoCellText::nameText(empty), "");
    EXPECT_FALSE(VideoCellText::isImage(empty));
    EXPECT_FALSE(VideoCellText::isImage({{"isImage", qulonglong(0)}}));
}

} // namespace
