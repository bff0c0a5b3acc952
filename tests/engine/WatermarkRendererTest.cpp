// The text watermark's picture: the size chosen is pixels of the frame, so a capital
// letter of a 48 size stands about 35 pixels tall whatever the screen's resolution.
#include "WatermarkRenderer.h"

#include <QFontMetricsF>
#include <gtest/gtest.h>

#include <cmath>

namespace {

// The box of the pixels at least half covered.
QRect inkBox(const QImage &image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qAlpha(image.pixel(x, y)) >= 128)
                box |= QRect(x, y, 1, 1);
    return box;
}

TEST(WatermarkRenderer, TextIsDrawnWithTheChosenSizeInPixels)
{
    for (const QString &family : {QString(), QStringLiteral("DejaVu Serif")}) {
        for (const int size : {16, 24, 48, 96}) {
            SCOPED_TRACE(QStringLiteral("%1 at %2").arg(family).arg(size).toStdString());
            TextWatermarkStyle style;
            style.fontName = family;
            style.pointSize = size;
            style.color = Qt::white;
            const QImage image = WatermarkRenderer::imageWithText(QStringLiteral("H"), style);
            ASSERT_FALSE(image.isNull());

            QFont reference = WatermarkRenderer::fontFor(style);
            reference.setPixelSize(size);
            const QFontMetricsF metrics(reference);
            const double letter = inkBox(image).height();
            // The letter's height is the font's capital height at that many pixels...
            EXPECT_NEAR(letter, metrics.capHeight(), std::max(1.5, size * 0.04));
            // ...which for these fonts is about 0.73 of the size, whichever font metrics say.
            EXPECT_GT(letter, size * 0.62);
            EXPECT_LT(letter, size * 0.82);
            // The picture is one line of that font, as measured for placing it.
            EXPECT_EQ(image.height(), int(std::ceil(metrics.height())));
            const QSizeF measured =
                WatermarkRenderer::measure(QStringLiteral("H"), style, QSizeF(1080, 1080));
            EXPECT_EQ(image.size(),
                      QSize(int(std::ceil(measured.width())), int(std::ceil(measured.height()))));
        }
    }
}

TEST(WatermarkRenderer, SizesOutOfRangeStillGiveAFont)
{
    TextWatermarkStyle style;
    style.pointSize = 0; // the default, 20
    EXPECT_EQ(WatermarkRenderer::fontFor(style).pixelSize(), 20);
    style.pointSize = 0.2;
    EXPECT_EQ(WatermarkRenderer::fontFor(style).pixelSize(), 1);
    style.pointSize = 1e12;
    EXPECT_EQ(WatermarkRenderer::fontFor(style).pixelSize(), 4096);
    style.pointSize = 30.6;
    EXPECT_EQ(WatermarkRenderer::fontFor(style).pixelSize(), 31);
}

} // namespace
