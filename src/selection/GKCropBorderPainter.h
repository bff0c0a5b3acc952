#pragma once
// Draws the selection frame: a dashed rectangle and, unless hidden, the eight handles as blue
// rings with white centres. Painter coordinates as Qt's (y down) over the border's own size.
#include <QColor>
#include <QSizeF>

class QPainter;

namespace GKCropBorderPainter {

// The dashed line's colour until a region is accepted.
QColor defaultBorderColor();
QColor tarnelBrandingColor();

void paint(QPainter &painter, const QSizeF &border, const QColor &borderColor, bool hideHandleRect);

} // namespace GKCropBorderPainter
