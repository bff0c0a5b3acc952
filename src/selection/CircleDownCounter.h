#pragma once
// Puts a countdown in the middle of a view and takes it away again. Stateless; its one shared
// instance is the counters' default delegate, which removes a counter that has finished.
// Main thread only.
#include "CircleCounterView.h"

#include <QRect>
#include <QSize>
#include <QSizeF>

class QWidget;

// The side of the square countdown over a region of these bounds: 200 once the shorter side
// is at least 200, otherwise half the shorter side in whole points.
int circleDownCounterSide(QSizeF contentBounds);

class CircleDownCounter : public CircleCounterViewDelegate {
public:
    static CircleDownCounter &circleDownCounter();

    // Replaces any counter on view with a new one of size (44 x 44 when not given) in its
    // middle and starts it. type 0: by the second; 1: by the tenth, shown as "%.1f", in a
    // smaller font; 2 and 3: as 0 and 1, counting up. Other types place the counter unstarted.
    // recordTimeDuration is the stored countdown length that decides from when images show;
    // the forms without it take the seconds. Returns the counter, owned by view.
    static CircleCounterView *showCircleDownWithSeconds(float seconds, QWidget *view);
    static CircleCounterView *showCircleDownWithSeconds(float seconds, QWidget *view, QSize size);
    static CircleCounterView *showCircleDownWithSeconds(float seconds, QWidget *view, QSize size,
                                                        int type);
    static CircleCounterView *showCircleDownWithSeconds(float seconds, QWidget *view, QSize size,
                                                        int type, int recordTimeDuration);
    static void removeCircleViewFromView(QWidget *view);
    // The first counter among view's own children, or null.
    static CircleCounterView *circleViewInView(QWidget *view);
    // A square of size centred in view's bounds.
    static QRect frameOfCircleViewOfSize(QSize size, const QWidget *view);

    // Takes the counter out of its parent; it is deleted once control returns to the event loop.
    void counterDownFinished(CircleCounterView *view) override;

private:
    CircleDownCounter() = default;
};
