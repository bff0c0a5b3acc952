#pragma once
// The loupe beside the pointer while a region is chosen: where it stands, which piece of the
// screen's picture it enlarges, the colour under the pointer and its text, and the red marks
// around the pointer. Numbers only; the view draws them.
//
// Its arithmetic mixes global and screen-relative values as the loupe always has: on screens
// away from the origin the panel and the marks stand where these numbers put them.
#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>

namespace LoupeGeometry {

inline constexpr QSize kPanelSize(80, 80);
// Within the panel, y up from its lower left: the enlarged picture above the text.
inline constexpr QRectF kPictureFrame(0, 30, 80, 50);
inline constexpr QRectF kTextFrame(0, 0, 80, 30);
inline constexpr int kSampleSide = 10;

struct Input {
    QPointF mouse;         // screen space: from the primary's lower left, y up
    QSize cursorSize;      // the arrow's image, whole points
    QPointF cursorHotSpot; // from the image's upper left, y down
    QRectF screen;         // the screen under the pointer, screen space
};

struct Loupe {
    int shownX = 0;
    int shownY = 0;
    QPointF panelOrigin; // the panel's lower left, in the overlay's coordinates (y up)
    QPoint colourPixel;  // in the screen's picture (pixel rows y down)
    QRect sample;        // the piece enlarged, in the screen's picture
    QRectF circle;       // the red marks, in the overlay's coordinates (y up)
    QRectF verticalBar;
    QRectF horizontalBar;
};

Loupe loupeAt(const Input &input);
// "x,y\nr,g,b" with the colour's channels times 255.
QString text(const Loupe &loupe, const QColor &colour);
// The colour at a pixel of the picture; black outside it or for no picture.
QColor colourAt(const QImage &picture, QPoint pixel);
// The piece of the picture, clipped to it; transparent where it leaves the picture.
QImage samplePiece(const QImage &picture, const QRect &sample);

} // namespace LoupeGeometry
