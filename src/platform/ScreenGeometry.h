#pragma once
// Conversions between the window server's space (origin upper left of the primary
// display, y down) and screen space (origin lower left of the primary display, y up).
// Adapters convert once, at the boundary.
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

} // namespace ScreenGeometry
