#include "SnipUtil.h"

#include "PointInRect.h"
#include "SelectionLog.h"

#include "Log.h"

namespace {

// The window server's default image option: bounds as asked, shadows included.
constexpr uint32_t kCGWindowImageDefault = 0;

QString rectDescription(const QRectF &rect)
{
    return QStringLiteral("NSRect: {{%1, %2}, {%3, %4}}")
        .arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height());
}

} // namespace

QRectF SnipUtil::primaryScreenFrame(const ScreenCatalog &screens)
{
    QRectF frame;
    if (const auto main = screens.mainScreen())
        frame = main->frame;
    // The main screen is the one with the focus; the flip needs the one at the origin.
    // Truncation, not rounding: a frame at (0.5, 0) still counts as the origin's.
    for (const ScreenInfo &screen : screens.screens()) {
        if (static_cast<long long>(screen.frame.x()) == 0 &&
            static_cast<long long>(screen.frame.y()) == 0)
            frame = screen.frame;
    }
    return frame;
}

QRectF SnipUtil::cgWindowRectToScreenRect(const ScreenCatalog &screens, const QRectF &rect)
{
    const double height = primaryScreenFrame(screens).height();
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}

QImage SnipUtil::screenShot(WindowServer &windows, const ScreenCatalog &screens, const QRectF &rect)
{
    const QList<CGWindowID> list =
        windows.CGWindowListCreate(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
    const double height = primaryScreenFrame(screens).height();
    const QRectF serverRect(rect.x(), height - (rect.y() + rect.height()), rect.width(),
                            rect.height());
    capstan::NSLog(lcSelection, "screenShot: %s", qUtf8Printable(rectDescription(serverRect)));
    return windows.CGWindowListCreateImageFromArray(serverRect, list, kCGWindowImageDefault);
}

QImage SnipUtil::imageRectangleScreen(WindowServer &windows, const QRectF &rect,
                                      const QList<CGWindowID> &except)
{
    QList<CGWindowID> list =
        windows.CGWindowListCreate(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
    list.removeIf([&except](CGWindowID id) { return except.contains(id); });
    return windows.CGWindowListCreateImageFromArray(rect, list, kCGWindowImageNominalResolution);
}

bool SnipUtil::isPoint(const QPointF &point, const QRectF &rect)
{
    return NSPointInRect(point, rect);
}

double SnipUtil::pointDistance(const QPointF &from, const QPointF &to)
{
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    return dx * dx + dy * dy;
}

QRectF SnipUtil::uniformRect(const QRectF &rect)
{
    double x = rect.x(), y = rect.y(), w = rect.width(), h = rect.height();
    if (w < 0) {
        x += w;
        w = -w;
    }
    if (h < 0) {
        y += h;
        h = -h;
    }
    return {x, y, w, h};
}

QRectF SnipUtil::rectToZero(const QRectF &rect)
{
    return rect.translated(-rect.topLeft());
}
