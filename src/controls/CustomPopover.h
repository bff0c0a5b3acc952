#pragma once
// A popover: a popup window around a PopViewController's view, beside a rectangle of another
// view, that closes when the user clicks outside it (behaviour 1, transient). Its frame is
// painted dark, as the light frame of the platform's appearance would not suit the windows.
// GUI thread only.
#include <QPoint>
#include <QRect>
#include <QWidget>

class PopViewController;

// The side of the rectangle the popover opens on, in the system's y-up terms: MinY is below.
enum class NSRectEdge { MinX = 0, MinY = 1, MaxX = 2, MaxY = 3 };

// The popup's top left corner (global coordinates) beside anchor on edge, centred along it.
QPoint popoverPosition(const QRect &anchor, const QSize &popupSize, NSRectEdge edge);

class CustomPopover : public QWidget {
    Q_OBJECT
public:
    // The content keeps its own size (initWithController).
    explicit CustomPopover(PopViewController *controller, QWidget *parent = nullptr);
    // The content takes the frame's size (initWithFrame:controller:).
    CustomPopover(const QRect &frame, PopViewController *controller, QWidget *parent = nullptr);

    // 1: closes when the user acts outside it.
    int behavior() const { return 1; }
    PopViewController *contentViewController() const { return controller_; }

    // Shows the popover beside rect (in view's coordinates) and paints its frame dark.
    void showRelativeToRect(const QRect &rect, QWidget *view, NSRectEdge preferredEdge);

private:
    PopViewController *controller_;
};
