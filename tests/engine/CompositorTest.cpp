// The compositor against fake ports: where the cursor, the highlight, the click ring
// and the watermarks land on the frame, and the frame's size and orientation.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "TNRecordManager.h"
#include "WatermarkRenderer.h"

#include <QPainter>
#include <gtest/gtest.h>

namespace {

// A frame whose quadrants differ (red top left, green top right, blue bottom left,
// white bottom right) so that a flip or a shift shows.
QImage quadrants(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    QPainter p(&image);
    p.fillRect(0, 0, width / 2, height / 2, Qt::red);
    p.fillRect(width / 2, 0, width - width / 2, height / 2, Qt::green);
    p.fillRect(0, height / 2, width / 2, height - height / 2, Qt::blue);
    p.fillRect(width / 2, height / 2, width - width / 2, height - height / 2, Qt::white);
    return image;
}

QImage solid(int width, int height, QColor colour)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return image;
}

// The bounding box, in QImage coordinates, of the pixels of exactly this colour.
QRect boxOf(const QImage &image, QRgb colour)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == colour)
                box |= QRect(x, y, 1, 1);
    return box;
}

class CompositorTest : public testing::Test {
protected:
    void SetUp() override
    {
        manager = std::make_unique<TNRecordManager>(fake.platform(), host);
        fake.pointer.arrow.image = solid(10, 20, QColor(255, 0, 255));
        fake.pointer.arrow.hotSpot = QPointF(0, 0);
    }

    void decorate(const std::function<void(FrameDecorations &)> &change)
    {
        FrameDecorations d;
        change(d);
        host.setDecorations(d);
    }

    FakePlatform fake;
    FakeSessionHost host;
    std::unique_ptr<TNRecordManager> manager;
};

TEST_F(CompositorTest, PlainFrameIsTheSourceScaledUprightToTheRectangle)
{
    manager->setCaptureRect(QRectF(0, 0, 200, 100));
    // A display of twice the density delivers twice the pixels.
    const QImage frame = manager->appendMouseCursor(quadrants(400, 200));
    ASSERT_EQ(frame.size(), QSize(200, 100));
    EXPECT_EQ(frame.pixel(10, 10), QColor(Qt::red).rgb());
    EXPECT_EQ(frame.pixel(190, 10), QColor(Qt::green).rgb());
    EXPECT_EQ(frame.pixel(10, 90), QColor(Qt::blue).rgb());
    EXPECT_EQ(frame.pixel(190, 90), QColor(Qt::white).rgb());
    EXPECT_TRUE(manager->appendMouseCursor(QImage()).isNull());
}

TEST_F(CompositorTest, CursorAndHighlightSitWhereThePointerIs)
{
    manager->setCaptureRect(QRectF(100, 50, 300, 200));
    fake.pointer.location = QPointF(150.7, 120.2);
    fake.pointer.arrow.hotSpot = QPointF(2, 3);
    decorate([](FrameDecorations &d) { d.isShowMouse = true; });
    QImage frame = manager->appendMouseCursor(solid(300, 200, Qt::black));
    // px = 150 - 100 - 2 = 48; py = 120 - 50 - (20 / 2 + 3) = 57, counted from the bottom.
    EXPECT_EQ(boxOf(frame, qRgb(255, 0, 255)), QRect(48, 200 - 57 - 20, 10, 20));

    decorate([](FrameDecorations &d) { d.isMouseHight = true; });
    frame = manager->appendMouseCursor(solid(300, 200, Qt::black));
    // The disc is centred on the arrow's middle: (53, 67) from the bottom.
    const QColor centre = frame.pixelColor(53, 200 - 67);
    EXPECT_EQ(centre.red(), 0);
    EXPECT_GT(centre.green(), 140);
    EXPECT_GT(centre.blue(), 140);
    EXPECT_EQ(frame.pixelColor(53 + 25, 200 - 67), QColor(Qt::black));
    EXPECT_EQ(boxOf(frame, qRgb(255, 0, 255)), QRect());
}

TEST_F(CompositorTest, ClickRingGrowsForFourteenFramesAtItsAnchor)
{
    manager->setCaptureRect(QRectF(0, 0, 200, 200));
    fake.pointer.location = QPointF(100, 110);
    decorate([](FrameDecorations &d) { d.isMouseClickEffect = true; });
    manager->setIsCursorClick(true);
    manager->setCursorEffectWidth(30.0f);

    int ringFrames = 0;
    for (int frame = 0; frame < 20; ++frame) {
        const QImage composed = manager->appendMouseCursor(solid(200, 200, Qt::black));
        if (!boxOf(composed, qRgb(56, 116, 175)).isEmpty())
            ++ringFrames;
        if (frame == 0) {
            // px, py = 100, 100; the anchor is the arrow's middle less 30.
            EXPECT_EQ(manager->cursorCenter(), QPointF(100 + 5 - 30, 100 + 10 - 30));
            fake.pointer.location = QPointF(10, 10); // the ring stays put
        }
    }
    EXPECT_EQ(ringFrames, 14);
    EXPECT_FALSE(manager->isCursorClick());
    EXPECT_EQ(manager->cursorEffectWidth(), 0.0f);

    // With the effect off a click stays armed for ever and draws nothing.
    decorate([](FrameDecorations &) {});
    manager->setIsCursorClick(true);
    manager->setCursorEffectWidth(30.0f);
    manager->appendMouseCursor(solid(200, 200, Qt::black));
    EXPECT_TRUE(manager->isCursorClick());
    EXPECT_EQ(manager->cursorEffectWidth(), 30.0f);
}

TEST_F(CompositorTest, WatermarkPlacementFollowsTheFrameWidth)
{
    struct Case {
        const char *name;
        int frameWidth, frameHeight;
        float centerX, centerY, scale;
        QRect expected; // QImage coordinates
    };
    // A 1000 x 500 image is fitted to 560 x 280 before scaling.
    const Case cases[] = {
        {"reference width", 594, 400, 0.5f, 0.5f, 1.0f, QRect(17, 60, 560, 280)},
        {"twice as wide", 1188, 800, 0.5f, 0.5f, 1.0f, QRect(34, 120, 1120, 560)},
        {"image at the left edge", 594, 400, 0.0f, 0.5f, 1.0f, QRect(0, 60, 280, 280)},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        manager->setCaptureRect(QRectF(0, 0, c.frameWidth, c.frameHeight));
        decorate([&c](FrameDecorations &d) {
            d.placement = {c.centerX, c.centerY, c.scale};
            d.watermarkType = 1;
            d.watermarkImage = solid(1000, 500, QColor(255, 255, 0));
        });
        const QImage frame =
            manager->appendMouseCursor(solid(c.frameWidth, c.frameHeight, Qt::black));
        const QRect box = boxOf(frame, qRgb(255, 255, 0));
        EXPECT_NEAR(box.left(), c.expected.left(), 1);
        EXPECT_NEAR(box.top(), c.expected.top(), 1);
        EXPECT_NEAR(box.width(), c.expected.width(), 2);
        EXPECT_NEAR(box.height(), c.expected.height(), 2);
    }
}

TEST_F(CompositorTest, TimeWatermarkWinsOverTypeAndSitsBottomLeftWithoutPosition)
{
    manager->setCaptureRect(QRectF(0, 0, 594, 400));
    decorate([](FrameDecorations &d) {
        d.placement = {0.0f, 0.0f, 1.0f};
        d.isTimeTextWatermark = true;
        d.watermarkType = 2;
        d.timeFramStyles = {"YYYY-MM-dd HH:mm:ss"};
        d.timeFramStyleIndex = 7; // beyond the list: the first style
        d.textStyle.color = QColor(0, 255, 0);
    });
    const QImage frame = manager->appendMouseCursor(solid(594, 400, Qt::black));
    QRect box;
    for (int y = 0; y < frame.height(); ++y)
        for (int x = 0; x < frame.width(); ++x)
            if (qGreen(frame.pixel(x, y)) > 128)
                box |= QRect(x, y, 1, 1);
    ASSERT_FALSE(box.isEmpty());
    EXPECT_LT(box.left(), 10);
    EXPECT_GT(box.bottom(), 400 - 10);
    EXPECT_GT(box.width(), 100); // a whole date, not an empty text
}

TEST_F(CompositorTest, PixelBuffersKeepTheImageAtTheLowerLeft)
{
    const QImage image = quadrants(40, 20);
    const PixelBufferRef same = TNRecordManager::pixelBufferFromCGImage(image, QSizeF(40.9, 20.2));
    ASSERT_TRUE(same);
    EXPECT_EQ(same->constImage(), image);

    const PixelBufferRef larger = TNRecordManager::pixelBufferFromCGImage(image, QSizeF(60, 50));
    ASSERT_TRUE(larger);
    const QImage out = larger->constImage();
    EXPECT_EQ(out.pixel(5, 30 + 5), QColor(Qt::red).rgb());
    EXPECT_EQ(out.pixel(35, 49), QColor(Qt::white).rgb());
    EXPECT_EQ(qAlpha(out.pixel(50, 5)), 0);

    // The picture over a buffer outlives the caller's reference to it.
    QImage view = TNRecordManager::imageFromPixelBuffer(
        TNRecordManager::pixelBufferFromCGImage(image, QSizeF(40, 20)));
    EXPECT_EQ(view.pixel(39, 19), QColor(Qt::white).rgb());

    const PixelBufferRef mirrored = mirrorPixelBuffer(same);
    EXPECT_EQ(mirrored->constImage().pixel(0, 0), QColor(Qt::green).rgb());
    EXPECT_FALSE(mirrorPixelBuffer(nullptr));
}

TEST_F(CompositorTest, LogoPlateFitsTheLogoIntoFourFifths)
{
    EXPECT_TRUE(manager->getTarnelLogoImageForRecording().isNull());
    manager->setCaptureRect(QRectF(0, 0, 1000, 500));
    const QImage plate = manager->getTarnelLogoImageForRecording();
    ASSERT_EQ(plate.size(), QSize(1000, 500));
    // The plate is dark grey at three quarters where the logo is not.
    const QColor corner = plate.pixelColor(2, 2);
    EXPECT_NEAR(corner.alphaF(), 0.75, 0.01);
    EXPECT_NEAR(corner.redF(), 33 / 255.0, 0.01);
    // The logo itself is drawn in the middle.
    EXPECT_NE(plate.pixelColor(500, 250), corner);

    // A 100 x 100 logo in a 1000 x 500 frame: a box of 800 x 400, the logo 400 x 400 at
    // x 300 and y 50 from the bottom.
    const QImage logoPlate =
        WatermarkRenderer::logoPlate(QSizeF(1000, 500), solid(100, 100, QColor(255, 255, 0)));
    EXPECT_EQ(boxOf(logoPlate, qRgb(255, 255, 0)), QRect(300, 500 - 50 - 400, 400, 400));
}

} // namespace
