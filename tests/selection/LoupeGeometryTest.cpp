// The loupe's numbers: where it stands and what it reads, for pointers on and off the primary
// screen and near the picture's edge.
#include "LoupeGeometry.h"

#include <gtest/gtest.h>

namespace {

using namespace LoupeGeometry;

TEST(LoupeGeometry, StandsBesideThePointerAndReadsThePictureUnderIt)
{
    struct Case {
        Input input;
        int shownX, shownY;
        QPointF panel;
        QPoint pixel;
    };
    const Case cases[] = {
        // A 12 x 20 arrow with its tip at (1, 1): shown x is past the arrow, shown y half an
        // arrow below the pointer; the panel 20 further right, centred on the pointer's height.
        {{{300, 400}, {12, 20}, {1, 1}, {0, 0, 1920, 1080}}, 311, 389, {331, 360}, {300, 680}},
        // A screen right of the primary: x counts from that screen, the picture's row from its
        // height, the pointer's x as it stands.
        {{{2000, 100}, {24, 24}, {4, 2}, {1920, 0, 1280, 800}}, 100, 86, {120, 60}, {2000, 700}},
    };
    for (const Case &c : cases) {
        const Loupe loupe = loupeAt(c.input);
        EXPECT_EQ(loupe.shownX, c.shownX);
        EXPECT_EQ(loupe.shownY, c.shownY);
        EXPECT_EQ(loupe.panelOrigin, c.panel);
        EXPECT_EQ(loupe.colourPixel, c.pixel);
        EXPECT_EQ(loupe.sample, QRect(c.pixel - QPoint(5, 5), QSize(10, 10)));
        EXPECT_EQ(loupe.circle.center(), c.input.mouse);
    }
    const Loupe loupe = loupeAt(cases[0].input);
    EXPECT_EQ(text(loupe, QColor(255, 128, 0)), "311,389\n255,128,0");
}

TEST(LoupeGeometry, APieceOffThePictureIsTransparentThereAndTheColourBlack)
{
    QImage picture(20, 20, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::red);
    picture.setPixelColor(4, 4, Qt::blue);
    const QImage piece = samplePiece(picture, QRect(-5, -5, 10, 10));
    EXPECT_EQ(piece.size(), QSize(10, 10));
    EXPECT_EQ(piece.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(piece.pixelColor(9, 9), QColor(Qt::blue));
    EXPECT_EQ(piece.pixelColor(8, 8), QColor(Qt::red));
    EXPECT_EQ(colourAt(picture, {4, 4}), QColor(Qt::blue));
    EXPECT_EQ(colourAt(picture, {25, 4}), QColor(Qt::black));
    EXPECT_EQ(colourAt(QImage(), {0, 0}), QColor(Qt::black));
    EXPECT_EQ(samplePiece(QImage(), QRect(0, 0, 10, 10)).pixelColor(5, 5).alpha(), 0);
}

} // namespace
