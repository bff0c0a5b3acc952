// A laptop panel left of the primary monitor, which is shorter: the primary does not sit
// at the X root's origin. Screens and the pointer must still be measured from the
// primary's lower left, a recording of either monitor must hold that monitor, and one of
// the primary the cursor where it is. The test runs an X server of its own with that
// layout; nothing else of the test desktop is needed.
#include "AppDelegate.h"
#include "LinuxAdapters.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "Pointer.h"
#include "ScreenCatalog.h"
#include "SnipUtil.h"
#include "X11Adapters.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <csignal>
#include <unistd.h>

namespace {

// Root 3200 x 1080: LEFT 1280 x 1080 at (0, 0), MAIN (primary) 1920 x 900 at (1280, 0).
const QRect kLeftRoot(0, 0, 1280, 1080);
const QRect kMainRoot(1280, 0, 1920, 900);
const QColor kBackground(0, 128, 0);

void xdotool(const QStringList &arguments)
{
    QProcess::execute("xdotool", arguments);
}

bool near(QColor actual, QColor expected, int tolerance = 48)
{
    return std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance;
}

class SolidWindow : public QRasterWindow {
public:
    explicit SolidWindow(QColor colour) : colour_(colour)
    {
        setFlags(Qt::Window | Qt::FramelessWindowHint);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), colour_);
    }

private:
    QColor colour_;
};

// Where the root point lies in screen space: from the primary's lower left, y up.
QPointF screenPoint(QPoint root)
{
    return {double(root.x() - kMainRoot.x()), double(kMainRoot.bottom() + 1 - root.y())};
}

TEST(OffsetLayout, ScreensAndThePointerAreMeasuredFromThePrimary)
{
    QtScreenCatalog screens;
    const std::optional<ScreenInfo> main = screens.mainScreen();
    ASSERT_TRUE(main);
    EXPECT_EQ(main->frame, QRectF(0, 0, 1920, 900));
    QList<QRectF> frames;
    for (const ScreenInfo &screen : screens.screens())
        frames << screen.frame;
    EXPECT_TRUE(frames.contains(QRectF(-1280, -180, 1280, 1080))) << frames.size();
    EXPECT_EQ(SnipUtil::primaryScreenFrame(screens), main->frame);

    X11Pointer pointer;
    for (const QPoint root : {QPoint(1380, 50), QPoint(300, 1000), QPoint(3000, 880)}) {
        xdotool({"mousemove", QString::number(root.x()), QString::number(root.y())});
        QTest::qWait(100);
        EXPECT_EQ(pointer.mouseLocation(), screenPoint(root)) << root.x() << "," << root.y();
    }
}

TEST(OffsetLayout, ARecordingOfEachMonitorHoldsThatMonitor)
{
    QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());
    LinuxPlatform platform;
    std::unique_ptr<AppDelegate> app = AppDelegate::create(platform.platform());
    TNRecordManager &manager = *app->recordManager();
    app->setIsShowMouse(true);
    app->setFps(25);
    manager.setRecordAudioType(AudioTypeNone);
    const CursorImage arrow = platform.platform().pointer->arrowCursor();

    struct Case {
        const char *name;
        QRect root;    // the monitor
        QRect marker;  // a window on it, root coordinates
        QColor colour; // of the marker
    };
    for (const Case &c :
         {Case{"primary", kMainRoot, QRect(1280 + 600, 500, 300, 200), Qt::cyan},
          Case{"panel left of it", kLeftRoot, QRect(100, 700, 300, 200), Qt::magenta}}) {
        SCOPED_TRACE(c.name);
        SolidWindow marker(c.colour);
        marker.setGeometry(c.marker);
        marker.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&marker, 5000));
        std::optional<ScreenInfo> screen;
        for (const ScreenInfo &s : platform.platform().screens->screens())
            if (s.frame.size() == QSizeF(c.root.size()))
                screen = s;
        ASSERT_TRUE(screen);
        const QPoint cursor = c.root.topLeft() + QPoint(400, 300);
        xdotool({"mousemove", QString::number(cursor.x()), QString::number(cursor.y())});
        QTest::qWait(200);

        const QString path = home.filePath(QStringLiteral("%1.mp4").arg(c.root.x()));
        app->setOutputPath(path);
        EncodeManager &encoder = manager.encodeManager();
        encoder.setFps(25);
        encoder.setVideoBitrate(8000);
        encoder.setImageSize(screen->frame.size());
        manager.setRecordVideoType(VideoTypeFullScreen);
        manager.setScreen(*screen);
        manager.setCaptureRect(QRectF());
        manager.startRecording();
        QTest::qWait(1200);
        manager.stopRecording();
        manager.captrueScreenInputEnable(false);

        const QImage frame = MediaProbe::frameAt(path, 0.6);
        ASSERT_FALSE(frame.isNull());
        EXPECT_EQ(frame.size(), c.root.size());
        const QPoint markerCentre = c.marker.center() - c.root.topLeft();
        EXPECT_TRUE(near(frame.pixelColor(markerCentre), c.colour));
        EXPECT_TRUE(near(frame.pixelColor(20, 20), kBackground));
        // The cursor is placed from the primary's corner, as the recorder always placed
        // it: on the primary it is where the pointer is.
        if (c.root != kMainRoot)
            continue;
        // The arrow: its hot spot at the pointer, less the half-height shift the recorder
        // has always drawn it with (y counted from the frame's bottom).
        const QPoint inMonitor = cursor - c.root.topLeft();
        const int left = inMonitor.x() - int(arrow.hotSpot.x());
        const int fromBottom =
            (c.root.height() - inMonitor.y()) - int(arrow.image.height() / 2 + arrow.hotSpot.y());
        const QRect box(left, frame.height() - fromBottom - arrow.image.height(),
                        arrow.image.width(), arrow.image.height());
        int unlike = 0;
        for (int y = box.top(); y <= box.bottom(); ++y)
            for (int x = box.left(); x <= box.right(); ++x)
                if (frame.rect().contains(x, y) && !near(frame.pixelColor(x, y), kBackground))
                    ++unlike;
        EXPECT_GT(unlike, 20) << "no arrow at " << box.x() << "," << box.y();
    }
    app->applicationWillTerminate();
}

// An X server with the layout, for this process only.
class LayoutServer {
public:
    bool start()
    {
        int fds[2];
        if (pipe(fds) != 0)
            return false;
        const pid_t child = fork();
        if (child == 0) {
            close(fds[0]);
            const std::string fd = std::to_string(fds[1]);
            execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "3200x1080x24",
                   "-nolisten", "tcp", "-noreset", static_cast<char *>(nullptr));
            _exit(127);
        }
        close(fds[1]);
        pid_ = child;
        // The number ends with a newline, which comes in a write of its own: closing the
        // pipe before it would kill the server.
        QByteArray number;
        char c = 0;
        while (::read(fds[0], &c, 1) == 1 && c != '\n')
            number += c;
        close(fds[0]);
        if (number.isEmpty())
            return false;
        qputenv("DISPLAY", ":" + number);
        const auto run = [](const QStringList &arguments) {
            return QProcess::execute(arguments.first(), arguments.mid(1)) == 0;
        };
        return run({"xrandr", "--setmonitor", "LEFT", "1280/338x1080/286+0+0", "screen"}) &&
               run({"xrandr", "--setmonitor", "*MAIN", "1920/508x900/238+1280+0", "none"}) &&
               run({"xsetroot", "-solid", kBackground.name()});
    }
    ~LayoutServer()
    {
        if (pid_ > 0)
            kill(pid_, SIGTERM);
    }

private:
    pid_t pid_ = 0;
};

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests (at build time, without a display) needs no server.
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    LayoutServer server;
    if (!server.start()) {
        std::fprintf(stderr, "could not start an X server with the offset layout\n");
        return 1;
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    if (qEnvironmentVariableIsEmpty("XCURSOR_THEME"))
        qputenv("XCURSOR_THEME", "Adwaita");
    QGuiApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
