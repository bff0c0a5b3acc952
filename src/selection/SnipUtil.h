#pragma once
// Rectangle arithmetic of the selection, and the conversion from the window server's space
// (origin at the upper left of the primary display, y down) to screen space (origin at its
// lower left, y up). Class operations only; the ports come in as arguments.
#include "ScreenCatalog.h"
#include "WindowServer.h"

#include <QImage>
#include <QPointF>
#include <QRectF>

class SnipUtil {
public:
    // What the on-screen windows show in rect (screen space). The caller owns the picture;
    // a null image when the rectangle is empty or off every screen.
    static QImage screenShot(WindowServer &windows, const ScreenCatalog &screens,
                             const QRectF &rect);
    // What the on-screen windows but `except` show in rect (the window server's space): a
    // window's picture free of what lies over it.
    static QImage imageRectangleScreen(WindowServer &windows, const QRectF &rect,
                                       const QList<CGWindowID> &except);
    // NSPointInRect: the min edges belong to the rectangle, the max edges don't.
    static bool isPoint(const QPointF &point, const QRectF &rect);
    // Squared: callers only compare distances.
    static double pointDistance(const QPointF &from, const QPointF &to);
    // Negative sides made positive, the origin moved by them.
    static QRectF uniformRect(const QRectF &rect);
    static QRectF rectToZero(const QRectF &rect);
    static QRectF cgWindowRectToScreenRect(const ScreenCatalog &screens, const QRectF &rect);

    // The frame the flip is measured against: that of the last screen whose origin is
    // (0, 0) in whole numbers, else the main screen's, else empty.
    static QRectF primaryScreenFrame(const ScreenCatalog &screens);
};
