#pragma once
// Port: the displays. Frames are in screen space (origin at the lower left of the
// primary display, y up), in points.
#include <QList>
#include <QRectF>
#include <QString>
#include <optional>

struct ScreenInfo {
    QRectF frame;
    qint64 number = 0; // "NSScreenNumber"
    QString localizedName;
    double backingScaleFactor = 1.0;

    bool operator==(const ScreenInfo &other) const { return number == other.number; }
};

class ScreenCatalog {
public:
    virtual ~ScreenCatalog() = default;
    virtual QList<ScreenInfo> screens() const = 0;
    // The screen with the keyboard focus; the primary one on X11.
    virtual std::optional<ScreenInfo> mainScreen() const = 0;
    // The primary display in the window system's own coordinates, where windows are placed
    // (X11: the root window's; a panel left of the primary moves it off the origin). By
    // default the screen at screen space's origin, standing at the root's origin.
    virtual QRectF primaryRootFrame() const
    {
        for (const ScreenInfo &screen : screens()) {
            if (screen.frame.topLeft() == QPointF())
                return QRectF(QPointF(), screen.frame.size());
        }
        const std::optional<ScreenInfo> main = mainScreen();
        return main ? QRectF(QPointF(), main->frame.size()) : QRectF();
    }
};
