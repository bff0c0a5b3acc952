// The X11 adapters on the test desktop: frames of the right place and size by both
// capture paths, the frame interval, the window list, pictures of covered windows and
// the pointer in screen space.
#include "X11Adapters.h"
#include "LinuxAdapters.h"

#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>

namespace {

class SolidWindow : public QRasterWindow {
public:
    SolidWindow(const QString &title, QColor top, QColor bottom) : top_(top), bottom_(bottom)
    {
        setTitle(title);
        setFlags(Qt::Window | Qt::FramelessWindowHint);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        p.fillRect(0, 0, width(), height() / 2, top_);
        p.fillRect(0, height() / 2, width(), height() - height() / 2, bottom_);
    }

private:
    QColor top_, bottom_;
};

void place(QWindow &window, int x, int y, int w, int h)
{
    window.setGeometry(x, y, w, h);
    window.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, 5000));
    QProcess::execute("xdotool", {"windowmove", QString::number(window.winId()), QString::number(x),
                                  QString::number(y)});
    QTest::qWait(300);
}

class X11AdaptersTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            GTEST_SKIP() << "needs the test desktop (scripts/test-desktop)";
        primary = *screens.mainScreen();
    }

    // The first frame the input delivers, for a crop in the display's points.
    PixelBufferRef firstFrame(bool plain, const QRectF &crop)
    {
        X11ScreenCaptureInput input(screens, plain);
        std::mutex mutex;
        PixelBufferRef frame;
        input.setDisplay(primary.number);
        input.setMinFrameDuration(0.05);
        input.setCropRect(crop);
        input.setSampleCallback([&](const PixelBufferRef &f) {
            std::lock_guard lock(mutex);
            if (!frame)
                frame = f;
        });
        input.startRunning();
        QTest::qWait(300);
        input.stopRunning();
        std::lock_guard lock(mutex);
        return frame;
    }

    QtScreenCatalog screens;
    ScreenInfo primary;
};

TEST_F(X11AdaptersTest, FramesShowTheCropUprightByBothPaths)
{
    SolidWindow window("x11-solid", Qt::red, Qt::blue);
    place(window, 100, 200, 200, 100);
    const double h = primary.frame.height();
    for (bool plain : {false, true}) {
        SCOPED_TRACE(plain ? "GetImage" : "MIT-SHM");
        // The window's area, counted from the display's lower left.
        const PixelBufferRef frame = firstFrame(plain, QRectF(100, h - 300, 200, 100));
        ASSERT_TRUE(frame);
        EXPECT_EQ(frame->width(), 200);
        EXPECT_EQ(frame->height(), 100);
        const QImage image = frame->constImage();
        EXPECT_EQ(image.pixelColor(100, 10), QColor(Qt::red));
        EXPECT_EQ(image.pixelColor(100, 90), QColor(Qt::blue));
        EXPECT_EQ(image.pixelColor(1, 1), QColor(Qt::red));
        EXPECT_EQ(image.pixelColor(198, 98), QColor(Qt::blue));

        // A crop reaching past the screen's edge is black there.
        const PixelBufferRef edge = firstFrame(plain, QRectF(-50, h - 300, 200, 100));
        ASSERT_TRUE(edge);
        EXPECT_EQ(edge->constImage().pixelColor(10, 50), QColor(Qt::black));
    }
}

TEST_F(X11AdaptersTest, FramesComeAtTheMinimalIntervalAndStopWithTheSession)
{
    X11ScreenCaptureInput input(screens);
    std::atomic<int> frames{0};
    QStringList events;
    input.setDisplay(primary.number);
    input.setMinFrameDuration(0.1);
    input.setCropRect(QRectF(0, 0, 64, 64));
    input.setSampleCallback([&](const PixelBufferRef &) { ++frames; });
    input.setSessionEventCallback(
        [&](CaptureSessionEvent e, const QString &) { events << QString::number(int(e)); });
    input.startRunning();
    EXPECT_TRUE(input.isRunning());
    QTest::qWait(1000);
    input.stopRunning();
    const int counted = frames;
    EXPECT_GE(counted, 8);
    EXPECT_LE(counted, 12);
    QTest::qWait(200);
    EXPECT_EQ(frames.load(), counted) << "a frame came after the stop";
    EXPECT_EQ(events, QStringList({"0", "1"}));
}

TEST_F(X11AdaptersTest, WindowListDescribesWindowsFrontFirst)
{
    SolidWindow back("x11-back", Qt::green, Qt::green);
    place(back, 300, 300, 240, 160);
    SolidWindow front("x11-front", Qt::yellow, Qt::yellow);
    place(front, 350, 320, 240, 160);
    front.raise();
    QTest::qWait(200);

    X11WindowServer server;
    QTest::qWait(300); // the windows draw themselves into their off-screen pictures
    const QList<CGWindowID> windows =
        server.CGWindowListCreate(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
    const qsizetype frontIndex = windows.indexOf(CGWindowID(front.winId()));
    const qsizetype backIndex = windows.indexOf(CGWindowID(back.winId()));
    ASSERT_GE(frontIndex, 0);
    ASSERT_GE(backIndex, 0);
    EXPECT_LT(frontIndex, backIndex);

    const QVariantList info = server.CGWindowListCopyWindowInfo(kCGWindowListOptionIncludingWindow,
                                                                CGWindowID(back.winId()));
    ASSERT_EQ(info.size(), 1);
    const QVariantMap d = info.first().toMap();
    EXPECT_EQ(d.value(kCGWindowName).toString(), "x11-back");
    EXPECT_EQ(d.value(kCGWindowOwnerName).toString(), "x11_tests");
    EXPECT_EQ(d.value(kCGWindowOwnerPID).toLongLong(), QCoreApplication::applicationPid());
    const QVariantMap bounds = d.value(kCGWindowBounds).toMap();
    EXPECT_EQ(QRect(bounds["X"].toInt(), bounds["Y"].toInt(), bounds["Width"].toInt(),
                    bounds["Height"].toInt()),
              QRect(300, 300, 240, 160));

    // The back window's picture shows it where the front one covers it.
    const QImage picture = server.CGWindowListCreateImageFromArray(
        QRectF(300, 300, 240, 160), {CGWindowID(back.winId())}, kCGWindowImageNominalResolution);
    ASSERT_EQ(picture.size(), QSize(240, 160));
    EXPECT_EQ(picture.pixelColor(200, 100), QColor(Qt::green));
    // The screen picture shows what is on top there.
    const QImage screen = server.CGWindowListCreateImage(QRectF(300, 300, 240, 160),
                                                         kCGWindowListOptionOnScreenOnly, 0);
    EXPECT_EQ(screen.pixelColor(200, 100), QColor(Qt::yellow));

    back.hide();
    QTest::qWait(300);
    EXPECT_FALSE(server.CGWindowListCreate(kCGWindowListOptionOnScreenOnly, kCGNullWindowID)
                     .contains(CGWindowID(back.winId())));
}

TEST_F(X11AdaptersTest, PointerIsInScreenSpaceOnBothMonitors)
{
    X11Pointer pointer;
    const double h = primary.frame.height();
    for (const QPoint at : {QPoint(100, 50), QPoint(1500, 1000)}) {
        QProcess::execute("xdotool",
                          {"mousemove", QString::number(at.x()), QString::number(at.y())});
        QTest::qWait(100);
        EXPECT_EQ(pointer.mouseLocation(), QPointF(at.x(), h - at.y()));
    }
    const CursorImage arrow = pointer.arrowCursor();
    ASSERT_FALSE(arrow.image.isNull());
    EXPECT_TRUE(QRectF(arrow.image.rect()).contains(arrow.hotSpot));
    // Something is drawn: not every pixel is transparent.
    bool drawn = false;
    for (int y = 0; y < arrow.image.height() && !drawn; ++y)
        for (int x = 0; x < arrow.image.width() && !drawn; ++x)
            drawn = qAlpha(arrow.image.pixel(x, y)) > 0;
    EXPECT_TRUE(drawn);
}

} // namespace
