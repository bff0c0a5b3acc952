#pragma once
// The two hit tests of the selection code. They differ only at the edges, which matters
// where two screens or two windows meet:
//   NSPointInRect  min edges in, max edges out (a y-down test);
//   NSMouseInRect  not flipped: the bottom edge out, the top edge in (a y-up test), so a
//                  pointer on the line between two stacked screens belongs to the lower one.
// Edges are origin and origin + size as given: a rectangle with a negative side holds no point.
#include <QPointF>
#include <QRectF>

inline bool NSMouseInRect(const QPointF &point, const QRectF &rect, bool flipped)
{
    const double minX = rect.x(), maxX = rect.x() + rect.width();
    const double minY = rect.y(), maxY = rect.y() + rect.height();
    if (!(point.x() >= minX && point.x() < maxX))
        return false;
    if (flipped)
        return point.y() >= minY && point.y() < maxY;
    return point.y() > minY && point.y() <= maxY;
}

inline bool NSPointInRect(const QPointF &point, const QRectF &rect)
{
    return NSMouseInRect(point, rect, true);
}
