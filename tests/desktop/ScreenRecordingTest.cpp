// Screen recordings for real: the X11 adapters, the recording engine and the encoder
// library on the test desktop, driven the way the overlay drives them, checked with
// ffprobe and decoded frames.
#include "AppDelegate.h"
#include "LinuxPlatform.h"
#include "MediaProbe.h"
#include "Pointer.h"
#include "ScreenCatalog.h"
#include "UserDefaults.h"

#include <QDir>
#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

constexpr int kFps = 25;

// Four quadrants of known colours, asymmetric so that a flip or a shift shows, and a
// bar that moves every frame so the encoder never sees a still picture.
class PatternWindow : public QRasterWindow {
public:
    explicit PatternWindow(const QString &title, QColor single = QColor()) : single_(single)
    {
        setTitle(title);
        setFlags(Qt::Window | Qt::FramelessWindowHint);
        QObject::connect(&timer_, &QTimer::timeout, this, [this] {
            ++tick_;
            update();
        });
        timer_.start(1000 / 30);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter p(this);
        const int w = width(), h = height();
        if (single_.isValid()) {
            p.fillRect(0, 0, w, h, single_);
            return;
        }
        p.fillRect(0, 0, w / 2, h / 2, Qt::red);
        p.fillRect(w / 2, 0, w - w / 2, h / 2, Qt::green);
        p.fillRect(0, h / 2, w / 2, h - h / 2, Qt::blue);
        p.fillRect(w / 2, h / 2, w - w / 2, h - h / 2, Qt::yellow);
        p.fillRect((tick_ * 4) % w, h - 12, 16, 12, Qt::white);
    }

private:
    QColor single_;
    QTimer timer_;
    int tick_ = 0;
};

bool near(QColor actual, QColor expected, int tolerance = 48)
{
    return std::abs(actual.red() - expected.red()) <= tolerance &&
           std::abs(actual.green() - expected.green()) <= tolerance &&
           std::abs(actual.blue() - expected.blue()) <= tolerance;
}

void xdotool(const QStringList &arguments)
{
    QProcess::execute("xdotool", arguments);
}

class ScreenRecordingTest : public testing::Test {
protected:
    static void SetUpTestSuite()
    {
        if (qEnvironmentVariableIsEmpty("DISPLAY"))
            return;
        home_ = new QTemporaryDir;
        qputenv("XDG_CONFIG_HOME", home_->filePath(".config").toUtf8());
        platform_ = new LinuxPlatform;
        app_ = AppDelegate::create(platform_->platform()).release();
    }

    static void TearDownTestSuite()
    {
        delete app_;
        delete platform_;
        delete home_;
        app_ = nullptr;
    }

    void SetUp() override
    {
        if (!app_)
            GTEST_SKIP() << "needs the test desktop (scripts/test-desktop)";
        manager = app_->recordManager();
        screen = platform_->platform().screens->screens().value(0);
        app_->setFps(kFps);
        app_->setIsShowMouse(false);
        app_->setIsMouseHight(false);
        app_->setIsMouseClickEffect(false);
        app_->setIsTimeTextWatermark(false);
        app_->setWatermarkType(2);
        manager->setRecordAudioType(AudioTypeNone);
        manager->setExceptWinodwArray({});
        // A pointer parked away from what the tests look at.
        xdotool({"mousemove", "1900", "1060"});
    }

    // Shows the window with its top left at (x, y) of the X screen, frame size w x h.
    static void place(QWindow &window, int x, int y, int w, int h)
    {
        window.setGeometry(x, y, w, h);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window, 5000));
        xdotool({"windowmove", QString::number(window.winId()), QString::number(x),
                 QString::number(y)});
        QTest::qWait(400);
    }

    // Records for the given time as the overlay's start and stop would, and answers
    // the file.
    QString record(quint64 videoType, const QRectF &rect, int milliseconds,
                   const std::function<void()> &during = {})
    {
        const QString path =
            QDir(home_->path()).filePath(QStringLiteral("rec-%1.mp4").arg(++recordings_));
        app_->setOutputPath(path);
        EncodeManager &encoder = manager->encodeManager();
        encoder.setFps(kFps);
        encoder.setVideoBitrate(8000);
        encoder.setImageSize(rect.isEmpty() ? screen.frame.size() : rect.size());
        manager->setRecordVideoType(videoType);
        manager->setScreen(screen);
        manager->setCaptureRect(rect);
        manager->startRecording();
        if (during)
            during();
        QTest::qWait(milliseconds);
        manager->stopRecording();
        manager->captrueScreenInputEnable(false);
        return path;
    }

    static inline QTemporaryDir *home_ = nullptr;
    static inline LinuxPlatform *platform_ = nullptr;
    static inline AppDelegate *app_ = nullptr;
    static inline int recordings_ = 0;
    TNRecordManager *manager = nullptr;
    ScreenInfo screen;
};

TEST_F(ScreenRecordingTest, WholeScreenHasItsSizeDurationFramesAndColours)
{
    PatternWindow window("capstan-pattern");
    place(window, 100, 100, 400, 300);
    const QString path = record(VideoTypeFullScreen, QRectF(), 5000);
    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok) << path.toStdString();
    EXPECT_EQ(video.codec, "h264");
    EXPECT_EQ(video.width, int(screen.frame.width()));
    EXPECT_EQ(video.height, int(screen.frame.height()));
    EXPECT_NEAR(video.duration, 5.0, 1.0 / kFps + 0.15);
    EXPECT_NEAR(video.frames, 5 * kFps, 5 * kFps * 0.02 + 1);

    const QImage frame = MediaProbe::frameAt(path, 2.5);
    ASSERT_FALSE(frame.isNull());
    EXPECT_TRUE(near(frame.pixelColor(200, 175), Qt::red)) << "top left";
    EXPECT_TRUE(near(frame.pixelColor(400, 175), Qt::green)) << "top right";
    EXPECT_TRUE(near(frame.pixelColor(200, 325), Qt::blue)) << "bottom left";
    EXPECT_TRUE(near(frame.pixelColor(400, 325), Qt::yellow)) << "bottom right";
}

TEST_F(ScreenRecordingTest, RegionShowsTheRegionUprightAndUnshifted)
{
    PatternWindow window("capstan-pattern");
    place(window, 100, 100, 400, 300);
    // In the overlay's coordinates: origin at the screen's lower left, y up. The enable
    // takes 2 points off the width and height, so the top edge is at y 102 of X.
    const double h = screen.frame.height();
    const QString path = record(VideoTypeCustomArea, QRectF(100, h - 400, 400, 300), 2000);
    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    EXPECT_EQ(video.width, 398);
    EXPECT_EQ(video.height, 298);
    const QImage frame = MediaProbe::frameAt(path, 1.0);
    ASSERT_FALSE(frame.isNull());
    EXPECT_TRUE(near(frame.pixelColor(50, 40), Qt::red));
    EXPECT_TRUE(near(frame.pixelColor(350, 40), Qt::green));
    EXPECT_TRUE(near(frame.pixelColor(50, 250), Qt::blue));
    EXPECT_TRUE(near(frame.pixelColor(350, 250), Qt::yellow));
}

TEST_F(ScreenRecordingTest, WindowIsFollowedAndShownWhileCovered)
{
    PatternWindow window("capstan-followed");
    place(window, 200, 200, 320, 240);
    PatternWindow cover("capstan-cover", Qt::magenta);
    app_->setSelectedWindowNumber(uint32_t(window.winId()));
    app_->setSelectedWindowName(window.title());
    manager->setExceptWinodwArray({1}); // the overlay's own window, gone by now
    const QString path = record(VideoTypeAppWindow, QRectF(200, 200, 320, 240), 4000, [&] {
        QTest::qWait(1000);
        xdotool({"windowmove", QString::number(window.winId()), "600", "300"});
        QTest::qWait(1000);
        place(cover, 550, 250, 500, 400);
    });
    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    EXPECT_EQ(video.width, 320);
    EXPECT_EQ(video.height, 240);
    // Late in the recording the window has moved and is covered: it still shows.
    const QImage frame = MediaProbe::frameAt(path, video.duration - 0.3);
    ASSERT_FALSE(frame.isNull());
    EXPECT_TRUE(near(frame.pixelColor(80, 60), Qt::red));
    EXPECT_TRUE(near(frame.pixelColor(240, 180), Qt::yellow));
}

TEST_F(ScreenRecordingTest, PauseLeavesNoGapInTheTimeline)
{
    PatternWindow window("capstan-pattern");
    place(window, 100, 100, 400, 300);
    const QString path = record(VideoTypeCustomArea, QRectF(0, 0, 402, 302), 1500, [&] {
        QTest::qWait(1500);
        manager->pauseRecording();
        QTest::qWait(2000);
        manager->resumeRecording();
    });
    const ProbedVideo video = MediaProbe::probeVideo(path);
    ASSERT_TRUE(video.ok);
    EXPECT_NEAR(video.duration, 3.0, 0.3);
    double largestStep = 0;
    for (int i = 1; i < video.frameTimes.size(); ++i)
        largestStep = std::max(largestStep, video.frameTimes[i] - video.frameTimes[i - 1]);
    EXPECT_LT(largestStep, 3.0 / kFps);
}

TEST_F(ScreenRecordingTest, CursorAndWatermarksAreBurntIn)
{
    PatternWindow window("capstan-pattern", Qt::darkGreen);
    place(window, 0, 0, 960, 1080);
    app_->setIsShowMouse(true);
    QImage mark(100, 50, QImage::Format_ARGB32_Premultiplied);
    mark.fill(Qt::magenta);
    app_->setWatermarkImage(mark);
    app_->setWatermarkType(1);
    app_->setWatermarkPlacement({0.75f, 0.25f, 1.0f});
    xdotool({"mousemove", "300", "250"});
    QTest::qWait(200);

    const double h = screen.frame.height();
    for (const QSizeF size : {QSizeF(602, 402), QSizeF(302, 202)}) {
        SCOPED_TRACE(size.width());
        // The region's top left is at (100, 100) of X.
        const QRectF rect(100, h - 100 - size.height(), size.width(), size.height());
        const QString path = record(VideoTypeCustomArea, rect, 1500);
        const QImage frame = MediaProbe::frameAt(path, 0.8);
        ASSERT_FALSE(frame.isNull());
        const int w = frame.width(), fh = frame.height();

        // The watermark: centred at 3/4 of the width and 1/4 of the height from the
        // bottom, 100 x 50 scaled by width / 594.
        const double s = w / 594.0;
        EXPECT_TRUE(near(frame.pixelColor(int(0.75 * w), int(fh - 0.25 * fh)), Qt::magenta));
        const int edge = int(0.75 * w + 50 * s);
        EXPECT_TRUE(near(frame.pixelColor(edge - 3, int(fh - 0.25 * fh)), Qt::magenta));
        EXPECT_TRUE(near(frame.pixelColor(edge + 4, int(fh - 0.25 * fh)), Qt::darkGreen));

        // The arrow: its hot spot where xdotool put the pointer, less the half-height
        // shift the recorder has always drawn it with.
        const CursorImage arrow = platform_->platform().pointer->arrowCursor();
        const int px = 300 - 100 - int(arrow.hotSpot.x());
        const int pyFromBottom =
            int((h - 250) - rect.y() - (arrow.image.height() / 2 + arrow.hotSpot.y()));
        const QRect arrowBox(px, fh - pyFromBottom - arrow.image.height(), arrow.image.width(),
                             arrow.image.height());
        int unlike = 0;
        for (int y = arrowBox.top(); y <= arrowBox.bottom(); ++y)
            for (int x = arrowBox.left(); x <= arrowBox.right(); ++x)
                if (frame.rect().contains(x, y) && !near(frame.pixelColor(x, y), Qt::darkGreen))
                    ++unlike;
        EXPECT_GT(unlike, 20) << "no arrow at " << arrowBox.x() << "," << arrowBox.y();
    }
}

} // namespace
