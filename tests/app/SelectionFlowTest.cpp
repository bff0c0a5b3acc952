// Pointing out what to record, from the record button: one overlay per screen, a region
// dragged and accepted, Escape before and after acceptance, a window taken by one click.
// Events are delivered as the window system would; the overlays run offscreen.
#include "CircleCounterView.h"
#include "MainWindowFixture.h"
#include "SettingsKeys.h"
#include "TNButton.h"
#include "TNClipView.h"
#include "TNRecordManager.h"
#include "TNRecordScreenWindowController.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTest>
#include <QWindow>

namespace {

class SelectionFlowTest : public MainWindowFixture {
protected:
    TNRecordManager &manager() { return *app->recordManager(); }

    TNRecordScreenWindowController *overlay(size_t index)
    {
        const auto &controllers = manager().recordWindowControllerArray();
        if (index >= controllers.size())
            return nullptr;
        return static_cast<TNRecordScreenWindowController *>(controllers[index].get());
    }

    void arm(quint64 type)
    {
        app->fullScreenClicked(int(type));
        window.recordBtn->click();
        ASSERT_EQ(manager().recordWindowControllerArray().size(), 2u);
        ASSERT_NE(overlay(0)->recordScreenView(), nullptr);
    }

    static void mouse(QWidget *view, QEvent::Type type, QPoint at, Qt::MouseButtons buttons,
                      Qt::MouseButton button = Qt::NoButton)
    {
        QMouseEvent event(type, QPointF(at), view->mapToGlobal(QPointF(at)), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(view, &event);
    }

    static void drag(QWidget *view, QPoint from, QPoint to)
    {
        mouse(view, QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        mouse(view, QEvent::MouseMove, to, Qt::LeftButton);
        mouse(view, QEvent::MouseButtonRelease, to, Qt::NoButton, Qt::LeftButton);
    }

    static void key(QWidget *window, int key)
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(window->windowHandle(), &press);
    }

    // The first screen's view is 1080 high: view point (x, y), y up, is widget (x, 1080 - y).
    static QPoint onFirst(int x, int y) { return QPoint(x, 1080 - y); }
};

TEST_F(SelectionFlowTest, ARegionIsDraggedAcceptedWithReturnAndRecordedWithEvenSides)
{
    arm(VideoTypeCustomArea);
    TNRecordScreenWindowController *first = overlay(0);
    QPointer<QWidget> other = overlay(1)->window();
    EXPECT_TRUE(first->window()->isVisible());
    EXPECT_TRUE(other->isVisible());
    EXPECT_EQ(first->window()->geometry(), QRect(0, 0, 1920, 1080));
    EXPECT_EQ(other->geometry(), QRect(1920, 312, 1366, 768)) << "bottoms aligned, y down";

    drag(first->recordScreenView(), onFirst(101, 99), onFirst(302, 300));
    EXPECT_FALSE(other->isVisible()) << "a region stands on one screen";
    EXPECT_EQ(first->recordScreenView()->contentViewFrame(), QRectF(101, 99, 201, 201));
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle));

    key(first->window(), Qt::Key_Return);
    ASSERT_EQ(manager().status(), quint64(RecordStatusRecording));
    EXPECT_EQ(first->selectedRegion(), QRectF(102, 100, 198, 198));
    EXPECT_EQ(app->encodeManager().imageSize(), QSizeF(196, 196));
    EXPECT_EQ(manager().screen()->number, 1);
    EXPECT_EQ(manager().exceptWinodwArray(),
              QList<CGWindowID>{CGWindowID(first->window()->winId())});
    EXPECT_TRUE(first->recordScreenView()->hideHandleRect());
    EXPECT_TRUE(first->window()->windowHandle()->flags() & Qt::WindowTransparentForInput);
    EXPECT_EQ(manager().recordWindowControllerArray().size(), 1u);

    // Escape after acceptance does nothing; the stop takes the frame away.
    key(first->window(), Qt::Key_Escape);
    EXPECT_EQ(manager().status(), quint64(RecordStatusRecording));
    QPointer<QWidget> frame = first->window();
    app->recordScreenClicked();
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle));
    EXPECT_FALSE(frame && frame->isVisible());
}

TEST_F(SelectionFlowTest, EscapeBeforeAcceptanceEndsTheSelectionOnEveryScreen)
{
    arm(VideoTypeCustomArea);
    QPointer<QWidget> first = overlay(0)->window(), second = overlay(1)->window();
    EXPECT_FALSE(window.screenItempopBtn->isEnabled());
    key(second, Qt::Key_Escape);
    EXPECT_TRUE(manager().recordWindowControllerArray().empty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !first && !second; }));
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle));
    EXPECT_TRUE(window.screenItempopBtn->isEnabled());
    EXPECT_TRUE(RecordingMediaEncoder::callsNamed("apiEncoderStart").empty());
    // And it can be armed again.
    arm(VideoTypeCustomArea);
}

TEST_F(SelectionFlowTest, AWindowUnderThePointerIsProposedAndTakenWithOneClick)
{
    // Window-server space, y down from the top of the 1080-high first screen. A panel in
    // front under the pointer does not end the walk; the normal window behind it does.
    fake.windows.windows = {
        {3, QStringLiteral("Panel"), QStringLiteral("Dock"), QRectF(250, 200, 100, 100), true, 2,
         25},
        {7, QStringLiteral("Editor"), QStringLiteral("notes.txt"), QRectF(200, 100, 403, 301), true,
         1, 0},
        {9, QStringLiteral("Desktop"), QStringLiteral("desktop"), QRectF(0, 0, 1920, 1080), true, 1,
         0},
    };
    arm(VideoTypeAppWindow);
    TNRecordScreenWindowController *first = overlay(0);
    TNClipView *view = first->recordScreenView();
    fake.pointer.location = QPointF(300, 800); // screen space, y up
    mouse(view, QEvent::MouseMove, onFirst(300, 800), Qt::NoButton);
    // (200, 1080 - 100 - 301) with both sides held to multiples of 4.
    EXPECT_EQ(view->contentRect(), QRectF(200, 679, 400, 300));
    EXPECT_EQ(app->selectedWindowNumber(), 7u);
    EXPECT_EQ(app->selectedWindowName(), QStringLiteral("notes.txt"));

    drag(view, onFirst(300, 800), onFirst(900, 200)); // a drag is only a click here
    ASSERT_EQ(manager().status(), quint64(RecordStatusRecording));
    EXPECT_EQ(first->selectedRegion(), QRectF(200, 680, 398, 298));
}

// A start that keeps the stored countdown (a timed start's): one second of it.
class CountdownFlowTest : public SelectionFlowTest {
protected:
    void SetUp() override
    {
        fake.defaults.setBool(true, QString::fromLatin1(Keys::IsShowReverseTime));
        fake.defaults.setFloat(1, QString::fromLatin1(Keys::RecordTimeDuration));
        SelectionFlowTest::SetUp();
    }
};

TEST_F(CountdownFlowTest, TheCounterStandsInTheRegionAndTheRecordingStartsWhenItEnds)
{
    app->fullScreenClicked(VideoTypeCustomArea);
    app->recordAfterScreenClicked();
    ASSERT_EQ(manager().recordWindowControllerArray().size(), 2u);
    TNRecordScreenWindowController *first = overlay(0);
    // 201 x 120: the counter takes half the shorter side.
    drag(first->recordScreenView(), onFirst(101, 99), onFirst(302, 219));
    key(first->window(), Qt::Key_Return);
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle)) << "counting first";
    EXPECT_FALSE(window.backhomeBtn->isEnabled());
    auto *counter = first->recordScreenView()->findChild<CircleCounterView *>();
    ASSERT_NE(counter, nullptr);
    EXPECT_EQ(counter->size(), QSize(60, 60));
    const QRect onWindow(counter->mapTo(first->window(), QPoint()), counter->size());
    EXPECT_LE((onWindow.center() - QRect(101, 1080 - 219, 201, 120).center()).manhattanLength(), 1);
    EXPECT_TRUE(first->window()->mask().contains(onWindow)) << "the counter is shown";

    EXPECT_TRUE(QTest::qWaitFor([&] { return manager().status() == RecordStatusRecording; }, 5000));
    EXPECT_FALSE(first->window()->mask().contains(onWindow.center())) << "only the frame stays";
    EXPECT_EQ(first->selectedRegion(), QRectF(102, 100, 198, 118));
}

} // namespace
