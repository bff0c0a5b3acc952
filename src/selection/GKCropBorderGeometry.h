#pragma once
// The frame of a selection as numbers: the eight round handles, the rectangles that sense
// the pointer over them and over the inner area, and the cursor a press there would earn.
// Border coordinates: origin at the border's lower left, y up; w and h its own size. Handles
// go counter-clockwise from the lower left corner; the index decides the cursor.
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

namespace GKCropBorderGeometry {

constexpr int kHandleCount = 8;
constexpr double kHandleSide = 10;
constexpr double kSmallHandleSide = 6;

// The large handles, which are also their sensing rectangles.
QList<QRectF> handleRects(const QSizeF &border);
// The white centres of the handles.
QList<QRectF> smallHandleRects(const QSizeF &border);
// The inner area, inside the handles' reach.
QRectF contentTrackRect(const QSizeF &border);
// The dashed line's rectangle.
QRectF dashRect(const QSizeF &border);

// The first handle whose sensing rectangle holds the point (min edges in, max out), or -1.
int handleAt(const QPointF &point, const QSizeF &border);
bool isInResizeRect(const QPointF &point, const QSizeF &border);

enum class Cursor {
    Arrow,
    ResizeNorthEastSouthWest, // handles 0 and 4
    ResizeUpDown,             // 1 and 5
    ResizeNorthWestSouthEast, // 2 and 6
    ResizeLeftRight,          // 3 and 7
    OpenHand,
    ClosedHand,
};

// The cursor on entering the area under point; Arrow where no area holds it. A frame whose
// handles are hidden has no areas at all.
Cursor cursorAt(const QPointF &point, const QSizeF &border, bool hideHandleRect, bool beDragging);

} // namespace GKCropBorderGeometry
