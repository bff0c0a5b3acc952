#include "X11Pointer.h"

#include "ScreenGeometry.h"

#include <QPainter>
#include <QPainterPath>
#include <X11/Xcursor/Xcursor.h>

using x11::reply;

namespace {

// The classic arrow, for a theme without one.
CursorImage drawnArrow()
{
    CursorImage arrow;
    arrow.image = QImage(12, 19, QImage::Format_ARGB32_Premultiplied);
    arrow.image.fill(Qt::transparent);
    QPainter painter(&arrow.image);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath path;
    path.moveTo(0.5, 0.5);
    path.lineTo(0.5, 16);
    path.lineTo(4.5, 12.5);
    path.lineTo(7.5, 18.5);
    path.lineTo(9.5, 17.5);
    path.lineTo(6.5, 11.5);
    path.lineTo(11.5, 11.5);
    path.closeSubpath();
    painter.setPen(QPen(Qt::white, 1));
    painter.setBrush(Qt::black);
    painter.drawPath(path);
    arrow.hotSpot = QPointF(0, 0);
    return arrow;
}

} // namespace

QPointF X11Pointer::mouseLocation() const
{
    if (!connection_.isValid())
        return {};
    xcb_connection_t *c = connection_.get();
    auto pointer =
        reply(xcb_query_pointer_reply(c, xcb_query_pointer(c, connection_.root()), nullptr));
    if (!pointer)
        return {};
    return ScreenGeometry::rootToScreen(QPointF(pointer->root_x, pointer->root_y),
                                        QRectF(connection_.primaryMonitor()));
}

CursorImage X11Pointer::arrowCursor() const
{
    std::call_once(arrowOnce_, [this] {
        // The theme's size from the environment: Xcursor's own lookup wants an Xlib display.
        bool sized = false;
        const int wanted = qEnvironmentVariableIntValue("XCURSOR_SIZE", &sized);
        const int size = sized && wanted > 0 ? wanted : 24;
        const QByteArray theme = qgetenv("XCURSOR_THEME");
        XcursorImage *image = XcursorLibraryLoadImage(
            "left_ptr", theme.isEmpty() ? nullptr : theme.constData(), size);
        if (!image) {
            arrow_ = drawnArrow();
            return;
        }
        // Xcursor pixels are premultiplied ARGB already.
        QImage picture(reinterpret_cast<const uchar *>(image->pixels), int(image->width),
                       int(image->height), int(image->width) * 4,
                       QImage::Format_ARGB32_Premultiplied);
        arrow_.image = picture.copy();
        arrow_.hotSpot = QPointF(image->xhot, image->yhot);
        XcursorImageDestroy(image);
    });
    return arrow_;
}
