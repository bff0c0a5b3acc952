// Rectangle arithmetic and the window-server-to-screen flip of the selection.
#include "SnipUtil.h"
#include "LogCapture.h"
#include "ScreenLayouts.h"

#include <gtest/gtest.h>

namespace {

QString text(const QRectF &r)
{
    return QStringLiteral("(%1, %2, %3, %4)").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
}

TEST(SnipUtilTest, UniformRectTurnsNegativeSidesPositive)
{
    const struct {
        QRectF in, out;
    } cases[] = {
        {QRectF(10, 10, -5, -6), QRectF(5, 4, 5, 6)},
        {QRectF(10, 10, 5, 6), QRectF(10, 10, 5, 6)},
        {QRectF(10, 10, -5, 6), QRectF(5, 10, 5, 6)},
        {QRectF(10, 10, 5, -6), QRectF(10, 4, 5, 6)},
        {QRectF(-3, -4, -7, -8), QRectF(-10, -12, 7, 8)},
        {QRectF(2, 3, 0, -1), QRectF(2, 2, 0, 1)},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(text(c.in).toStdString());
        const QRectF got = SnipUtil::uniformRect(c.in);
        EXPECT_EQ(text(got), text(c.out));
        // The same area is covered: the far corners stay where the drag put them.
        EXPECT_EQ(text(SnipUtil::uniformRect(got)), text(got));
        EXPECT_EQ(got.normalized(), c.in.normalized());
    }
}

// The walk over the windows under the pointer uses this test, so the edges decide which
// of two touching windows wins.
TEST(SnipUtilTest, IsPointInRectTakesMinEdgesButNotMaxEdges)
{
    const QRectF rect(10, 20, 100, 50);
    const struct {
        QPointF point;
        bool inside;
    } cases[] = {
        {{10, 20}, true},     {{50, 40}, true},    {{109.9, 69.9}, true}, {{110, 40}, false},
        {{50, 70}, false},    {{110, 70}, false},  {{9.99, 40}, false},   {{50, 19.99}, false},
        {{10, 69.999}, true}, {{-50, -40}, false},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(testing::Message() << c.point.x() << "," << c.point.y());
        EXPECT_EQ(SnipUtil::isPoint(c.point, rect), c.inside);
    }
    // Nothing is inside an empty or inverted rectangle, not even its origin.
    EXPECT_FALSE(SnipUtil::isPoint({10, 20}, QRectF(10, 20, 0, 50)));
    EXPECT_FALSE(SnipUtil::isPoint({10, 20}, QRectF(10, 20, 100, 0)));
    EXPECT_FALSE(SnipUtil::isPoint({5, 15}, QRectF(10, 20, -10, -10)));
}

TEST(SnipUtilTest, WindowRectsFlipAgainstTheScreenAtTheOrigin)
{
    FakeScreens screens;
    useThreeScreens(screens);
    const struct {
        const char *what;
        QRectF server, screen;
    } cases[] = {
        {"top left of the primary", QRectF(0, 0, 100, 50), QRectF(0, 850, 100, 50)},
        {"bottom of the primary", QRectF(20, 850, 100, 50), QRectF(20, 0, 100, 50)},
        {"on the screen above", QRectF(10, -1080, 200, 100), QRectF(10, 1880, 200, 100)},
        {"across the upper edge", QRectF(30, -25, 40, 50), QRectF(30, 875, 40, 50)},
        {"on the screen to the left", QRectF(-1200, 100, 300, 200), QRectF(-1200, 600, 300, 200)},
        {"left screen's bottom", QRectF(-1280, 974, 10, 50), QRectF(-1280, -124, 10, 50)},
        {"empty", QRectF(5, 5, 0, 0), QRectF(5, 895, 0, 0)},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(text(SnipUtil::cgWindowRectToScreenRect(screens, c.server)), text(c.screen));
    }
}

TEST(SnipUtilTest, FlipFrameIsTheLastScreenAtTheOriginInWholeNumbers)
{
    const struct {
        const char *what;
        QList<ScreenInfo> screens;
        double height;
    } cases[] = {
        {"the main screen when it is at the origin", {primaryScreen(), aboveScreen()}, 900},
        {"the origin's screen though another is main", {aboveScreen(), primaryScreen()}, 900},
        {"the origin in whole numbers", {aboveScreen(), {QRectF(0.6, 0.9, 1000, 700), 5, {}}}, 700},
        {"the last of two mirrored at the origin",
         {{QRectF(0, 0, 800, 600), 1, {}}, aboveScreen(), {QRectF(0, 0, 1024, 768), 2, {}}},
         768},
        {"the main screen when none is at the origin",
         {aboveScreen(), {QRectF(-1, 0, 800, 600), 2, {}}},
         1080},
        {"nothing without screens", {}, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        FakeScreens screens;
        screens.list = c.screens;
        EXPECT_EQ(SnipUtil::primaryScreenFrame(screens).height(), c.height);
        EXPECT_EQ(text(SnipUtil::cgWindowRectToScreenRect(screens, QRectF(1, 2, 3, 4))),
                  text(QRectF(1, c.height - 6, 3, 4)));
    }
}

TEST(SnipUtilTest, ScreenShotAsksForTheFlippedRectOfTheOnScreenWindows)
{
    FakeScreens screens;
    useThreeScreens(screens);
    FakeWindowServer windows;
    windows.windows = {{11, "Front", "a", QRectF(0, 0, 40, 40)},
                       {12, "Hidden", "b", QRectF(0, 0, 80, 80), false},
                       {13, "Back", "c", QRectF(0, 0, 80, 80)}};
    windows.colours = {{11, Qt::red}, {12, Qt::green}, {13, Qt::blue}};

    LogCapture log;
    // The top left 60 x 60 of the primary, in screen space.
    const QImage image = SnipUtil::screenShot(windows, screens, QRectF(0, 840, 60, 60));

    ASSERT_EQ(windows.imageRects.size(), 1);
    EXPECT_EQ(text(windows.imageRects.first()), text(QRectF(0, 0, 60, 60)));
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(60, 60));
    EXPECT_EQ(image.pixelColor(10, 10), QColor(Qt::red));  // the front window on top
    EXPECT_EQ(image.pixelColor(50, 50), QColor(Qt::blue)); // the hidden one is not asked for
    EXPECT_EQ(log.lines().filter(QStringLiteral("screenShot: ")).size(), 1);
}

TEST(SnipUtilTest, ScreenShotOfAnEmptyRectIsNull)
{
    FakeScreens screens;
    useThreeScreens(screens);
    FakeWindowServer windows;
    EXPECT_TRUE(SnipUtil::screenShot(windows, screens, QRectF(10, 10, 0, 0)).isNull());
}

} // namespace
