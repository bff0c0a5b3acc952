#pragma once
// The coordinate spaces and their conversions, in one place:
// - the window system's own (X11: the root window's, origin at its upper left, y down);
// - the window server's: the same axes, origin at the primary monitor's upper left;
// - screen space: origin at the primary monitor's lower left, y up.
// The primary monitor need not sit at the root's origin (a laptop panel left of it), so
// every conversion takes the primary's rectangle in root coordinates. Adapters convert
// once, at the boundary.
#include <QPointF>
#include <QRectF>

namespace ScreenGeometry {

inline QRectF windowServerToScreen(const QRectF &rect, double primaryHeight)
{
    return {rect.x(), primaryHeight - rect.y() - rect.height(), rect.width(), rect.height()};
}

// The same flip: it is its own inverse.
inline QRectF screenToWindowServer(const QRectF &rect, double primaryHeight)
{
    return windowServerToScreen(rect, primaryHeight);
}

inline QRectF rootToWindowServer(const QRectF &rect, const QRectF &primaryRoot)
{
    return rect.translated(-primaryRoot.topLeft());
}

inline QRectF windowServerToRoot(const QRectF &rect, const QRectF &primaryRoot)
{
    return rect.translated(primaryRoot.topLeft());
}

inline QRectF rootToScreen(const QRectF &rect, const QRectF &primaryRoot)
{
    return windowServerToScreen(rootToWindowServer(rect, primaryRoot), primaryRoot.height());
}

inline QRectF screenToRoot(const QRectF &rect, const QRectF &primaryRoot)
{
    return windowServerToRoot(screenToWindowServer(rect, primaryRoot.height()), primaryRoot);
}

inline QPointF rootToScreen(const QPointF &point, const QRectF &primaryRoot)
{
    return {point.x() - primaryRoot.x(), primaryRoot.y() + primaryRoot.height() - point.y()};
}

} // namespace ScreenGeometry
