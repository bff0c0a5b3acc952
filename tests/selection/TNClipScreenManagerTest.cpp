// A still clip over two screens, driven by mouse and key events as the window system delivers
// them, against a desktop of fake windows whose pictures are solid colours.
#include "TNClipScreenManager.h"
#include "FakePlatform.h"
#include "TNButton.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QWindow>
#include <gtest/gtest.h>

namespace {

// Two 800x600 screens side by side. In the window server's space (y down): the editor
// (red) at (100, 100, 300, 200) lies under the terminal (blue) at (200, 150, 300, 200).
class TNClipScreenManagerTest : public testing::Test {
protected:
    static constexpr CGWindowID kEditor = 0x400001;
    static constexpr CGWindowID kTerminal = 0x400002;

    void SetUp() override
    {
        fake.screens.list = {{QRectF(0, 0, 800, 600), 1, QStringLiteral("Left")},
                             {QRectF(800, 0, 800, 600), 2, QStringLiteral("Right")}};
        // Numbers far from those the test platform gives its own windows (1, 2, ...).
        fake.windows.windows = {{kTerminal, "Terminal", "shell", QRectF(200, 150, 300, 200)},
                                {kEditor, "Editor", "notes", QRectF(100, 100, 300, 200)}};
        fake.windows.colours = {{kEditor, Qt::red}, {kTerminal, Qt::blue}};
        manager.didClipImage = keepClip;
    }

    // The pointer moves to (x, y) of the left screen's window (y down), and the view hears it.
    void send(TNClipView *view, QEvent::Type type, QPoint at, Qt::MouseButtons buttons,
              Qt::MouseButton button = Qt::NoButton)
    {
        fake.pointer.location = QPointF(at.x(), 600 - at.y());
        QMouseEvent event(type, QPointF(at), view->mapToGlobal(QPointF(at)), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(view, &event);
    }

    bool waitForClip()
    {
        return QTest::qWaitFor([this] { return !clips.isEmpty(); }, 3000);
    }

    FakePlatform fake;
    Platform platform = fake.platform();
    TNClipScreenManager manager{platform};
    QList<QImage> clips;
    std::function<void(const QImage &)> keepClip = [this](const QImage &image) {
        clips.append(image);
    };
};

TEST_F(TNClipScreenManagerTest, AClickTakesTheWindowUnderThePointerAloneWithTheShutter)
{
    manager.startCapture();
    ASSERT_EQ(manager.clipWindowControllerArray().size(), 2u);
    manager.startCapture(); // a second start while working does nothing
    EXPECT_EQ(manager.clipWindowControllerArray().size(), 2u);

    // Over the part of the editor that the terminal does not cover.
    TNClipView *view = manager.clipWindowControllerArray().at(0)->clipView();
    send(view, QEvent::MouseMove, {120, 120}, Qt::NoButton);
    const TNClipWindowController *left = manager.clipWindowControllerArray().at(0);
    EXPECT_EQ(left->lastWindowNumber(), kEditor);
    EXPECT_EQ(left->lastWindowRect(), QRectF(100, 300, 300, 200)); // view space, y up
    send(view, QEvent::MouseButtonPress, {120, 120}, Qt::LeftButton, Qt::LeftButton);
    send(view, QEvent::MouseButtonRelease, {120, 120}, Qt::NoButton, Qt::LeftButton);
    ASSERT_TRUE(waitForClip());

    // Inside the border's margin, and all editor: the terminal over it is left out.
    const QImage picture = clips.first();
    EXPECT_EQ(picture.size(), QSize(290, 190));
    EXPECT_EQ(picture.pixelColor(200, 100), QColor(Qt::red));
    EXPECT_EQ(picture.pixelColor(280, 180), QColor(Qt::red));
    EXPECT_EQ(fake.sounds.played, QStringList{QStringLiteral("1356")});
    EXPECT_FALSE(manager.isWorking());
    EXPECT_TRUE(manager.clipWindowControllerArray().empty());
}

TEST_F(TNClipScreenManagerTest, AfterADragThePictureShowsWhatTheRectangleShows)
{
    fake.sounds.available.clear(); // without the sound a clip is silent, and still works
    TNClipScreenManager silent(platform);
    silent.didClipImage = keepClip;
    silent.startCapture();
    TNClipView *view = silent.clipWindowControllerArray().at(0)->clipView();
    send(view, QEvent::MouseMove, {120, 120}, Qt::NoButton);
    send(view, QEvent::MouseButtonPress, {150, 200}, Qt::LeftButton, Qt::LeftButton);
    send(view, QEvent::MouseMove, {300, 300}, Qt::LeftButton);
    send(view, QEvent::MouseMove, {450, 400}, Qt::LeftButton);
    send(view, QEvent::MouseButtonRelease, {450, 400}, Qt::NoButton, Qt::LeftButton);
    EXPECT_FALSE(view->selection().onlyClipCurrentWindow());
    TNClipToolbarViewController *toolbar = silent.clipWindowControllerArray().at(0)->toolbar();
    ASSERT_TRUE(toolbar->isVisible());
    // Centred under the region, inside its lower edge.
    const QRect region = view->widgetRect(view->contentViewFrame()).toRect();
    EXPECT_NEAR(toolbar->geometry().center().x(), region.center().x(), 4);
    EXPECT_GT(toolbar->geometry().bottom(), region.center().y());
    EXPECT_LE(toolbar->geometry().bottom(), region.bottom());

    toolbar->clipButton()->click();
    ASSERT_TRUE(waitForClip());
    // The region (150, 200)-(450, 400) inside the margin: the terminal over the editor.
    const QImage picture = clips.first();
    EXPECT_EQ(picture.size(), region.adjusted(5, 5, -5, -5).size());
    const QPoint terminalOverEditor = QPoint(250, 220) - region.topLeft() - QPoint(5, 5);
    EXPECT_EQ(picture.pixelColor(terminalOverEditor), QColor(Qt::blue));
    const QPoint editorAlone = QPoint(170, 210) - region.topLeft() - QPoint(5, 5);
    EXPECT_EQ(picture.pixelColor(editorAlone), QColor(Qt::red));
    EXPECT_TRUE(fake.sounds.played.isEmpty());
}

TEST_F(TNClipScreenManagerTest, EscapeOnAnyScreenEndsTheClipOnAll)
{
    manager.startCapture();
    const auto controllers = manager.clipWindowControllerArray();
    QWidget *right = controllers.at(1)->window();
    ASSERT_TRUE(right->isVisible());
    QTest::keyClick(right->windowHandle(), Qt::Key_Escape);
    EXPECT_FALSE(manager.isWorking());
    EXPECT_TRUE(manager.clipWindowControllerArray().empty());
    QCoreApplication::processEvents();
    EXPECT_TRUE(clips.isEmpty());
    EXPECT_TRUE(fake.sounds.played.isEmpty());
    // A new clip can start again.
    manager.startCapture();
    EXPECT_TRUE(manager.isWorking());
}

} // namespace
