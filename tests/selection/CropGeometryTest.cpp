// The selection frame's handles, their sensing and the cursor each earns.
#include "GKCropBorderGeometry.h"
#include "GKCropBorderPainter.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

using namespace GKCropBorderGeometry;

const QSizeF kBorder(100, 60);

TEST(CropGeometryTest, HandlesGoCounterClockwiseFromTheLowerLeftWithWhiteCentres)
{
    const QList<QRectF> large = handleRects(kBorder);
    const QList<QRectF> small = smallHandleRects(kBorder);
    const QPointF largeAt[] = {{0, 0},   {45, 0},  {90, 0}, {90, 25},
                               {90, 50}, {45, 50}, {0, 50}, {0, 25}};
    ASSERT_EQ(large.size(), kHandleCount);
    ASSERT_EQ(small.size(), kHandleCount);
    for (int i = 0; i < kHandleCount; ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(large[i], QRectF(largeAt[i], QSizeF(10, 10)));
        // Each white centre sits 2 inside its ring.
        EXPECT_EQ(small[i], large[i].adjusted(2, 2, -2, -2));
    }
    EXPECT_EQ(contentTrackRect(kBorder), QRectF(10, 10, 80, 40));
    EXPECT_EQ(dashRect(kBorder), QRectF(5, 5, 90, 50));
}

TEST(CropGeometryTest, OppositeHandlesShareACursorAndTheInnerAreaAHand)
{
    const struct {
        QPointF point;
        Cursor cursor;
    } cases[] = {
        {{5, 5}, Cursor::ResizeNorthEastSouthWest},   // 0, lower left
        {{95, 55}, Cursor::ResizeNorthEastSouthWest}, // 4, upper right
        {{50, 5}, Cursor::ResizeUpDown},              // 1
        {{50, 55}, Cursor::ResizeUpDown},             // 5
        {{95, 5}, Cursor::ResizeNorthWestSouthEast},  // 2, lower right
        {{5, 55}, Cursor::ResizeNorthWestSouthEast},  // 6, upper left
        {{95, 30}, Cursor::ResizeLeftRight},          // 3
        {{5, 30}, Cursor::ResizeLeftRight},           // 7
        {{30, 30}, Cursor::OpenHand},
        {{20, 5}, Cursor::Arrow}, // on the frame between two handles
        {{10, 5}, Cursor::Arrow}, // the max edge of a handle is outside it
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.point.x() << "," << c.point.y());
        EXPECT_EQ(cursorAt(c.point, kBorder, false, false), c.cursor);
        EXPECT_EQ(isInResizeRect(c.point, kBorder),
                  c.cursor != Cursor::OpenHand && c.cursor != Cursor::Arrow);
    }
    EXPECT_EQ(cursorAt({30, 30}, kBorder, false, true), Cursor::ClosedHand);
    // A recording's frame is inert.
    EXPECT_EQ(cursorAt({5, 5}, kBorder, true, false), Cursor::Arrow);
    EXPECT_EQ(cursorAt({30, 30}, kBorder, true, true), Cursor::Arrow);
}

// White-centred blue rings on a dashed line; a recording's frame is the dashed line alone.
TEST(CropGeometryTest, TheFrameDrawsRingsOnADashedLineAndHidesThemOnceAccepted)
{
    const auto render = [](bool hide) {
        QImage image(100, 60, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        GKCropBorderPainter::paint(painter, kBorder, GKCropBorderPainter::defaultBorderColor(),
                                   hide);
        return image;
    };
    const auto white = [](QRgb c) { return qRed(c) > 230 && qGreen(c) > 230 && qBlue(c) > 230; };
    const auto blue = [](QRgb c) { return qAlpha(c) > 150 && qRed(c) < 40 && qBlue(c) > 120; };

    const QImage shown = render(false);
    // Handle 1 (lower middle) is at the image's bottom: centre (50, 55), ring at x 46.
    EXPECT_TRUE(white(shown.pixel(50, 55)));
    EXPECT_TRUE(blue(shown.pixel(46, 55)));
    EXPECT_TRUE(blue(shown.pixel(91, 30))) << "the right middle ring";
    EXPECT_TRUE(white(shown.pixel(95, 30)));
    EXPECT_EQ(qAlpha(shown.pixel(30, 30)), 0) << "the inner area stays clear";

    const QImage hidden = render(true);
    int painted = 0, gaps = 0, whites = 0;
    for (int x = 12; x < 88; ++x) // along the top line, away from the corners
        qAlpha(hidden.pixel(x, 5)) > 100 ? ++painted : ++gaps;
    for (int y = 0; y < hidden.height(); ++y)
        for (int x = 0; x < hidden.width(); ++x)
            whites += white(hidden.pixel(x, y)) && qAlpha(hidden.pixel(x, y)) > 200;
    EXPECT_GT(painted, 30);
    EXPECT_GT(gaps, 10) << "the line is dashed";
    EXPECT_EQ(whites, 0) << "no handles";
}

} // namespace
