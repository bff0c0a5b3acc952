#include "CircleDownCounter.h"

#include <QWidget>
#include <algorithm>

namespace {

constexpr QSize kDefaultSize(44, 44);
constexpr double kLargestSide = 200;
constexpr int kSmallFontSize = 15;
constexpr float kTenth = 0.1f;

// Out of the view tree at once, so the next look-up doesn't find it; gone later, since the
// counter may be in the middle of its own tick.
void detach(CircleCounterView *counter)
{
    counter->stop();
    counter->hide();
    counter->setParent(nullptr);
    counter->deleteLater();
}

} // namespace

int circleDownCounterSide(QSizeF contentBounds)
{
    const double shorter = std::min(contentBounds.width(), contentBounds.height());
    return shorter >= kLargestSide ? int(kLargestSide) : int(shorter / 2);
}

CircleDownCounter &CircleDownCounter::circleDownCounter()
{
    static CircleDownCounter shared;
    return shared;
}

CircleCounterView *CircleDownCounter::showCircleDownWithSeconds(float seconds, QWidget *view)
{
    return showCircleDownWithSeconds(seconds, view, kDefaultSize);
}

CircleCounterView *CircleDownCounter::showCircleDownWithSeconds(float seconds, QWidget *view,
                                                                QSize size)
{
    return showCircleDownWithSeconds(seconds, view, size, 0);
}

CircleCounterView *CircleDownCounter::showCircleDownWithSeconds(float seconds, QWidget *view,
                                                                QSize size, int type)
{
    return showCircleDownWithSeconds(seconds, view, size, type, int(seconds));
}

CircleCounterView *CircleDownCounter::showCircleDownWithSeconds(float seconds, QWidget *view,
                                                                QSize size, int type,
                                                                int recordTimeDuration)
{
    if (!view)
        return nullptr;
    removeCircleViewFromView(view);
    auto *counter = new CircleCounterView(frameOfCircleViewOfSize(size, view), view);
    counter->show();
    counter->raise();
    counter->setDelegate(&circleDownCounter());
    counter->setRecordTimeDuration(recordTimeDuration);
    switch (type) {
    case 2:
        counter->setCircleIncre(true);
        [[fallthrough]];
    case 0:
        counter->startWithSeconds(seconds);
        break;
    case 3:
        counter->setCircleIncre(true);
        [[fallthrough]];
    case 1:
        counter->setNumberFont(CircleCounterView::courierBold(kSmallFontSize));
        counter->startWithSeconds(seconds, kTenth, QStringLiteral("%.1f"));
        break;
    default:
        break;
    }
    return counter;
}

void CircleDownCounter::removeCircleViewFromView(QWidget *view)
{
    while (CircleCounterView *counter = circleViewInView(view))
        detach(counter);
}

CircleCounterView *CircleDownCounter::circleViewInView(QWidget *view)
{
    if (!view)
        return nullptr;
    return view->findChild<CircleCounterView *>(QString(), Qt::FindDirectChildrenOnly);
}

QRect CircleDownCounter::frameOfCircleViewOfSize(QSize size, const QWidget *view)
{
    return QRect((view->width() - size.width()) / 2, (view->height() - size.height()) / 2,
                 size.width(), size.height());
}

void CircleDownCounter::counterDownFinished(CircleCounterView *view)
{
    if (view)
        detach(view);
}
