#include "GKCropBorderGeometry.h"

#include "PointInRect.h"

namespace GKCropBorderGeometry {

namespace {

// The lower left corners of the handles of a side s, inset by `inset` from the edges.
QList<QRectF> handles(const QSizeF &border, double side)
{
    const double w = border.width(), h = border.height();
    const double inset = (kHandleSide - side) / 2;
    const double far = kHandleSide - inset; // from the right or top edge
    const double half = side / 2;
    const QPointF corners[kHandleCount] = {
        {inset, inset},     {w / 2 - half, inset},   {w - far, inset}, {w - far, h / 2 - half},
        {w - far, h - far}, {w / 2 - half, h - far}, {inset, h - far}, {inset, h / 2 - half},
    };
    QList<QRectF> rects;
    for (const QPointF &corner : corners)
        rects.append(QRectF(corner, QSizeF(side, side)));
    return rects;
}

} // namespace

QList<QRectF> handleRects(const QSizeF &border)
{
    return handles(border, kHandleSide);
}

QList<QRectF> smallHandleRects(const QSizeF &border)
{
    return handles(border, kSmallHandleSide);
}

QRectF contentTrackRect(const QSizeF &border)
{
    return QRectF(10, 10, border.width() - 20, border.height() - 20);
}

QRectF dashRect(const QSizeF &border)
{
    return QRectF(5, 5, border.width() - 10, border.height() - 10);
}

int handleAt(const QPointF &point, const QSizeF &border)
{
    const QList<QRectF> rects = handleRects(border);
    for (int i = 0; i < rects.size(); ++i)
        if (NSPointInRect(point, rects[i]))
            return i;
    return -1;
}

bool isInResizeRect(const QPointF &point, const QSizeF &border)
{
    return handleAt(point, border) >= 0;
}

Cursor cursorAt(const QPointF &point, const QSizeF &border, bool hideHandleRect, bool beDragging)
{
    if (hideHandleRect)
        return Cursor::Arrow;
    const int handle = handleAt(point, border);
    if (handle >= 0) {
        // Opposite handles lie on one line: clearing the bit of 4 pairs them.
        static constexpr Cursor byLine[] = {Cursor::ResizeNorthEastSouthWest, Cursor::ResizeUpDown,
                                            Cursor::ResizeNorthWestSouthEast,
                                            Cursor::ResizeLeftRight};
        return byLine[handle & ~4];
    }
    if (NSPointInRect(point, contentTrackRect(border)))
        return beDragging ? Cursor::ClosedHand : Cursor::OpenHand;
    return Cursor::Arrow;
}

} // namespace GKCropBorderGeometry
