#pragma once
// What the overlays of a recording and of a still clip share: the window on a screen, the
// key monitor, and a window description's bounds.
#include "ScreenCatalog.h"

#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QVariantMap>
#include <QWidget>
#include <functional>
#include <memory>

// Above every window, unmoved by the window manager, see-through where nothing is drawn,
// covering the screen. Titled with the program's name: a still clip leaves windows so named
// out of its picture.
std::unique_ptr<QWidget> makeOverlayWindow(const ScreenCatalog &screens, const ScreenInfo &screen);

// Shows the window, raises it and gives it the keys, with the focus on `focus` if given.
void orderFrontAndFocus(QWidget *window, QWidget *focus);

// A window description's kCGWindowBounds as a rectangle.
QRectF rectFromBounds(const QVariantMap &bounds);

// Sees the key presses of one window before its widgets do and lets them pass on.
class KeyMonitor : public QObject {
public:
    KeyMonitor(QWidget *window, std::function<void(int key)> onKey);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QWidget> window_;
    std::function<void(int)> onKey_;
};
