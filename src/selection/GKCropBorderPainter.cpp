#include "GKCropBorderPainter.h"

#include "GKCropBorderGeometry.h"

#include <QPainter>
#include <QPen>

namespace GKCropBorderPainter {

namespace {

// The geometry is y up; the handles are symmetric, so each maps onto one of them.
QRectF flipped(const QRectF &rect, const QSizeF &border)
{
    return QRectF(rect.x(), border.height() - rect.y() - rect.height(), rect.width(),
                  rect.height());
}

} // namespace

QColor defaultBorderColor()
{
    return QColor::fromRgbF(0, 130 / 255.0, 213 / 255.0, 0.85);
}

QColor tarnelBrandingColor()
{
    return QColor::fromRgbF(0, 0.51, 0.84, 0.85);
}

void paint(QPainter &painter, const QSizeF &border, const QColor &borderColor, bool hideHandleRect)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(borderColor, 2);
    // Qt counts dashes in pen widths: 6 on, 3 off.
    pen.setDashPattern({3, 1.5});
    pen.setDashOffset(0);
    // Square caps would lengthen every dash by the width and close the gaps.
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(flipped(GKCropBorderGeometry::dashRect(border), border));
    if (!hideHandleRect) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(tarnelBrandingColor());
        for (const QRectF &handle : GKCropBorderGeometry::handleRects(border))
            painter.drawEllipse(flipped(handle, border));
        painter.setBrush(QColor::fromRgbF(1, 1, 1, 0.95));
        for (const QRectF &handle : GKCropBorderGeometry::smallHandleRects(border))
            painter.drawEllipse(flipped(handle, border));
    }
    painter.restore();
}

} // namespace GKCropBorderPainter
