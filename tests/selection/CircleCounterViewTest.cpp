// The countdown before a recording. Most cases tick the counter by hand: without an event loop
// its own one-shot timer never fires, so the sequence is exact. One case lets the timers run.
#include "CircleCounterView.h"
#include "CircleDownCounter.h"
#include "Images.h"

#include <QCoreApplication>
#include <QImage>
#include <QPointer>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <utility>
#include <vector>

namespace {

using Shown = std::pair<QString, QString>; // ring, digit

class CountingDelegate : public CircleCounterViewDelegate {
public:
    void counterDownFinished(CircleCounterView *view) override
    {
        ++calls;
        shownAtFinish = {view->ringImage().name, view->digitImage().name};
        if (deleteView)
            delete view;
    }
    int calls = 0;
    Shown shownAtFinish;
    bool deleteView = false;
};

// A 200 x 200 counter filling a black window, told to a counting delegate.
struct CounterOnWindow {
    CountingDelegate delegate;
    QWidget window;
    CircleCounterView *counter;

    explicit CounterOnWindow(int recordTimeDuration)
    {
        window.resize(200, 200);
        window.setAutoFillBackground(true);
        QPalette colours = window.palette();
        colours.setColor(QPalette::Window, Qt::black);
        window.setPalette(colours);
        counter = new CircleCounterView(QRect(0, 0, 200, 200), &window);
        counter->setDelegate(&delegate);
        counter->setRecordTimeDuration(recordTimeDuration);
    }

    Shown shown() const { return {counter->ringImage().name, counter->digitImage().name}; }
};

void flushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

int directCounters(const QWidget &view)
{
    return int(
        view.findChildren<CircleCounterView *>(QString(), Qt::FindDirectChildrenOnly).size());
}

} // namespace

TEST(CircleCounterView, ThreeSecondsShowThreeTwoOneAfterASilentTickAndFinishOnTheFifthTick)
{
    CounterOnWindow on(3);
    on.counter->startWithSeconds(3);
    // The first tick comes at once and leaves 4: nothing to show yet.
    EXPECT_TRUE(on.counter->isRunning());
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 4);
    EXPECT_EQ(on.shown(), Shown());
    EXPECT_TRUE(on.counter->hasPendingTick());

    std::vector<Shown> seen;
    for (int tick = 0; tick < 3; ++tick) {
        on.counter->updateTime();
        seen.push_back(on.shown());
        EXPECT_FALSE(on.counter->ringImage().pixmap.isNull()) << tick;
        EXPECT_FALSE(on.counter->digitImage().pixmap.isNull()) << tick;
        EXPECT_EQ(on.counter->rotateAnimation().state(), QAbstractAnimation::Running) << tick;
        EXPECT_TRUE(on.counter->hasPendingTick()) << tick;
    }
    const std::vector<Shown> expected{{"003", "3"}, {"002", "2"}, {"001", "1"}};
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(on.delegate.calls, 0);
    EXPECT_FALSE(on.counter->starting());

    // Four intervals after the start: the end, told once, with no tick left to come.
    on.counter->updateTime();
    EXPECT_EQ(on.delegate.calls, 1);
    EXPECT_EQ(on.delegate.shownAtFinish, Shown("001", "1"));
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 0);
    EXPECT_EQ(on.counter->circleSegs(), 29);
    EXPECT_TRUE(on.counter->starting());
    EXPECT_FALSE(on.counter->hasPendingTick());
    EXPECT_EQ(on.counter->rotateAnimation().state(), QAbstractAnimation::Stopped);
    EXPECT_EQ(on.counter->rotationAngle(), 0);
}

TEST(CircleCounterView, ImagesWaitUntilTheRemainderIsBelowTheStoredDurationPlusOne)
{
    // Ten seconds: the ring's name takes one zero above nine.
    CounterOnWindow ten(10);
    ten.counter->startWithSeconds(10);
    EXPECT_EQ(ten.shown(), Shown());
    ten.counter->updateTime();
    EXPECT_EQ(ten.shown(), Shown("010", "10"));
    ten.counter->updateTime();
    EXPECT_EQ(ten.shown(), Shown("009", "9"));
    EXPECT_FALSE(ten.counter->ringImage().pixmap.isNull());

    // With no stored duration nothing ever shows, and the end still comes.
    CounterOnWindow none(0);
    none.counter->startWithSeconds(2);
    for (int tick = 0; tick < 3; ++tick) {
        none.counter->updateTime();
        EXPECT_EQ(none.shown(), Shown()) << tick;
    }
    EXPECT_EQ(none.delegate.calls, 1);
}

TEST(CircleCounterView, RunsToTheEndByItsOwnTimers)
{
    CounterOnWindow on(1);
    on.counter->startWithSeconds(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return on.delegate.calls > 0; }, 10000));
    EXPECT_EQ(on.delegate.calls, 1);
    EXPECT_EQ(on.delegate.shownAtFinish, Shown("001", "1"));
    EXPECT_FALSE(on.counter->hasPendingTick());
}

TEST(CircleCounterView, StartIsIgnoredWhileRunningAndForSecondsNotAboveZero)
{
    CounterOnWindow on(3);
    on.counter->startWithSeconds(0);
    on.counter->startWithSeconds(-2);
    on.counter->startWithSeconds(std::nanf(""));
    EXPECT_FALSE(on.counter->isRunning());
    EXPECT_FALSE(on.counter->hasPendingTick());
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 20);

    on.counter->startWithSeconds(3);
    on.counter->startWithSeconds(8);
    on.counter->startWithSeconds(8, 0.5f, QStringLiteral("%.1f"));
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 4);
    EXPECT_FLOAT_EQ(on.counter->timeInterval(), 1);
    EXPECT_EQ(on.counter->timeFormatString(), QStringLiteral("%.0f"));

    // Stopped, a tick changes nothing and a new start counts afresh.
    on.counter->stop();
    EXPECT_FALSE(on.counter->isRunning());
    EXPECT_FALSE(on.counter->hasPendingTick());
    on.counter->updateTime();
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 4);
    on.counter->startWithSeconds(2);
    EXPECT_FLOAT_EQ(on.counter->timeInSeconds(), 3);
    EXPECT_TRUE(on.counter->isRunning());
}

TEST(CircleCounterView, AnIntervalLongerThanTheSecondsBecomesATenthOfThem)
{
    struct Case {
        float seconds, interval, expected;
    };
    for (const Case &c :
         {Case{3, 5, 0.3f}, Case{3, 0.05f, 0.05f}, Case{2, 2, 2}, Case{4, 0, 0.4f}}) {
        CircleCounterView counter(QRect(0, 0, 44, 44));
        counter.startWithSeconds(c.seconds, c.interval);
        EXPECT_FLOAT_EQ(counter.timeInterval(), c.expected) << c.seconds << " " << c.interval;
        EXPECT_FLOAT_EQ(counter.timeInSeconds(), c.seconds + 2 - c.expected);
    }
}

TEST(CircleCounterView, ReachingZeroTellsTheDelegateOnlyInAParentAndSurvivesBeingDeleted)
{
    CountingDelegate alone;
    CircleCounterView orphan(QRect(0, 0, 44, 44));
    orphan.setDelegate(&alone);
    orphan.setRecordTimeDuration(1);
    orphan.startWithSeconds(1);
    orphan.updateTime();
    orphan.updateTime();
    EXPECT_EQ(alone.calls, 0);
    EXPECT_TRUE(orphan.starting());

    CounterOnWindow on(1);
    on.delegate.deleteView = true;
    QPointer<CircleCounterView> counter(on.counter);
    counter->startWithSeconds(1);
    counter->updateTime();
    counter->updateTime();
    EXPECT_EQ(on.delegate.calls, 1);
    EXPECT_TRUE(counter.isNull());
}

TEST(CircleCounterView, TheRingTurnsCounterClockwiseAndStandsUprightWhenStopped)
{
    CounterOnWindow on(1);
    on.counter->startWithSeconds(1);
    on.counter->updateTime();
    ASSERT_EQ(on.shown(), Shown("001", "1"));
    QVariantAnimation &turn = on.counter->rotateAnimation();
    ASSERT_EQ(turn.state(), QAbstractAnimation::Running);
    EXPECT_EQ(turn.duration(), 1000);
    EXPECT_EQ(turn.startValue().toDouble(), 0);
    EXPECT_EQ(turn.endValue().toDouble(), 360);
    ASSERT_TRUE(QTest::qWaitFor([&] { return on.counter->rotationAngle() > 0; }, 2000));

    // The ring's bright quarter runs from twelve to three o'clock; points on the ring at half
    // past one and half past ten (radius 90 around the middle).
    const QPoint topRight(164, 36), topLeft(36, 36);
    turn.pause();
    turn.setCurrentTime(0);
    QImage upright = on.window.grab().toImage();
    EXPECT_GT(upright.pixelColor(topRight).red(), 200);
    EXPECT_LT(upright.pixelColor(topLeft).red(), 120);
    turn.setCurrentTime(250);
    EXPECT_DOUBLE_EQ(on.counter->rotationAngle(), 90);
    QImage quarter = on.window.grab().toImage();
    EXPECT_LT(quarter.pixelColor(topRight).red(), 120);
    EXPECT_GT(quarter.pixelColor(topLeft).red(), 200);

    on.counter->stopAnimation();
    EXPECT_EQ(turn.state(), QAbstractAnimation::Stopped);
    EXPECT_EQ(on.counter->rotationAngle(), 0);
    EXPECT_GT(on.window.grab().toImage().pixelColor(topRight).red(), 200);

    on.counter->startAnimtion(true);
    EXPECT_EQ(turn.startValue().toDouble(), 360);
    EXPECT_EQ(turn.endValue().toDouble(), 0);
    EXPECT_EQ(turn.state(), QAbstractAnimation::Running);
}

TEST(CircleCounterView, EveryRingAndDigitOfTheLongestCountdownExists)
{
    for (int n = 0; n <= 11; ++n) {
        const QString ring = QString::asprintf(n > 9 ? "0%d" : "00%d", n);
        EXPECT_FALSE(pixmapNamed(ring, QSize(60, 60)).isNull()) << qPrintable(ring);
        EXPECT_FALSE(pixmapNamed(QString::number(n), QSize(60, 60)).isNull()) << n;
    }
}

TEST(CircleDownCounter, SideIsTwoHundredOrHalfTheShorterSide)
{
    struct Case {
        QSizeF bounds;
        int side;
    };
    for (const Case &c : {Case{{800, 600}, 200}, Case{{200, 900}, 200}, Case{{400, 120}, 60},
                          Case{{199, 400}, 99}, Case{{121.5, 300}, 60}, Case{{1, 1}, 0}}) {
        EXPECT_EQ(circleDownCounterSide(c.bounds), c.side)
            << c.bounds.width() << "x" << c.bounds.height();
    }
}

TEST(CircleDownCounter, PlacesAStartedCounterInTheMiddleAndReplacesAnOldOne)
{
    QWidget view;
    view.resize(300, 200);
    CircleCounterView *first = CircleDownCounter::showCircleDownWithSeconds(3, &view);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->parentWidget(), &view);
    EXPECT_EQ(first->geometry(), QRect(128, 78, 44, 44));
    EXPECT_EQ(first->delegate(), &CircleDownCounter::circleDownCounter());
    EXPECT_TRUE(first->isRunning());
    EXPECT_EQ(first->recordTimeDuration(), 3);
    EXPECT_EQ(CircleDownCounter::circleViewInView(&view), first);

    QPointer<CircleCounterView> old(first);
    CircleCounterView *second =
        CircleDownCounter::showCircleDownWithSeconds(5, &view, QSize(60, 60), 0, 4);
    EXPECT_EQ(second->geometry(), QRect(120, 70, 60, 60));
    EXPECT_EQ(second->recordTimeDuration(), 4);
    EXPECT_EQ(CircleDownCounter::circleViewInView(&view), second);
    EXPECT_EQ(directCounters(view), 1);
    ASSERT_FALSE(old.isNull());
    EXPECT_FALSE(old->isRunning());
    flushDeletes();
    EXPECT_TRUE(old.isNull());

    CircleDownCounter::removeCircleViewFromView(&view);
    EXPECT_EQ(CircleDownCounter::circleViewInView(&view), nullptr);
    EXPECT_EQ(directCounters(view), 0);
    EXPECT_EQ(CircleDownCounter::showCircleDownWithSeconds(3, nullptr), nullptr);
}

TEST(CircleDownCounter, TypesChooseIntervalFormatFontAndCountingUp)
{
    struct Case {
        int type;
        bool running;
        float interval;
        const char *format;
        int fontSize;
        bool incre;
    };
    for (const Case &c :
         {Case{0, true, 1, "%.0f", 20, false}, Case{1, true, 0.1f, "%.1f", 15, false},
          Case{2, true, 1, "%.0f", 20, true}, Case{3, true, 0.1f, "%.1f", 15, true},
          Case{7, false, 1, "%.0f", 20, false}}) {
        QWidget view;
        view.resize(100, 100);
        CircleCounterView *counter =
            CircleDownCounter::showCircleDownWithSeconds(3, &view, QSize(50, 50), c.type);
        EXPECT_EQ(counter->isRunning(), c.running) << c.type;
        EXPECT_FLOAT_EQ(counter->timeInterval(), c.interval) << c.type;
        EXPECT_EQ(counter->timeFormatString(), QLatin1String(c.format)) << c.type;
        EXPECT_EQ(counter->numberFont().pointSize(), c.fontSize) << c.type;
        EXPECT_EQ(counter->circleIncre(), c.incre) << c.type;
    }
}

TEST(CircleDownCounter, AFinishedCounterLeavesItsView)
{
    QWidget view;
    view.resize(300, 200);
    QPointer<CircleCounterView> counter =
        CircleDownCounter::showCircleDownWithSeconds(1, &view, QSize(60, 60));
    counter->updateTime();
    EXPECT_EQ(counter->digitImage().name, QStringLiteral("1"));
    EXPECT_EQ(CircleDownCounter::circleViewInView(&view), counter.data());
    counter->updateTime();
    EXPECT_EQ(CircleDownCounter::circleViewInView(&view), nullptr);
    EXPECT_EQ(counter->parentWidget(), nullptr);
    flushDeletes();
    EXPECT_TRUE(counter.isNull());
}
