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
};
