// The screen under the pointer, and the point conversions on a screen.
#include "NSScreenPointConversion.h"
#include "ScreenLayouts.h"

#include <gtest/gtest.h>

namespace {

TEST(NSScreenPointConversionTest, ScreenUnderThePointerTakesTopEdgesAndLeavesBottomEdges)
{
    FakeScreens screens;
    useThreeScreens(screens);
    const struct {
        const char *what;
        QPointF pointer;
        qint64 screen; // 0: none
    } cases[] = {
        {"inside the primary", {100, 100}, 71},
        {"inside the screen above", {100, 1500}, 72},
        {"inside the left screen", {-640, 400}, 73},
        {"on the line between primary and above", {100, 900}, 71},
        {"just over that line", {100, 900.5}, 72},
        {"on the top edge of the screen above", {100, 1980}, 72},
        {"over the top of the screen above", {100, 1980.5}, 0},
        {"on the bottom edge of the primary", {100, 0}, 0},
        {"on the line between left and primary", {0, 400}, 71},
        {"just left of that line", {-0.5, 400}, 73},
        {"on the right edge of the primary", {1440, 400}, 0},
        {"above the primary, right of its width", {1500, 1000}, 72},
        {"on the bottom edge of the left screen", {-640, -124}, 0},
        {"below every screen", {100, -500}, 0},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        FakePointer pointer;
        pointer.location = c.pointer;
        const auto screen =
            NSScreenPointConversion::currentScreenForMouseLocation(screens, pointer);
        if (c.screen == 0) {
            EXPECT_FALSE(screen.has_value());
        } else {
            ASSERT_TRUE(screen.has_value());
            EXPECT_EQ(screen->number, c.screen);
        }
    }
}

TEST(NSScreenPointConversionTest, OverlappingScreensGiveTheFirstInTheList)
{
    FakeScreens screens;
    screens.list = {{QRectF(0, 0, 1920, 1080), 1, {}}, {QRectF(0, 0, 1920, 1080), 2, {}}};
    FakePointer pointer;
    pointer.location = {500, 500};
    auto screen = NSScreenPointConversion::currentScreenForMouseLocation(screens, pointer);
    ASSERT_TRUE(screen.has_value());
    EXPECT_EQ(screen->number, 1);
    screens.list.swapItemsAt(0, 1);
    screen = NSScreenPointConversion::currentScreenForMouseLocation(screens, pointer);
    ASSERT_TRUE(screen.has_value());
    EXPECT_EQ(screen->number, 2);
}

TEST(NSScreenPointConversionTest, NoScreensNoScreenUnderThePointer)
{
    FakeScreens screens;
    FakePointer pointer;
    pointer.location = {0, 0};
    EXPECT_FALSE(NSScreenPointConversion::currentScreenForMouseLocation(screens, pointer));
}

TEST(NSScreenPointConversionTest, PointConversionsOnAScreen)
{
    const struct {
        const char *what;
        ScreenInfo screen;
        QPointF point, converted, flipped;
    } cases[] = {
        {"primary", primaryScreen(), {100, 200}, {100, 700}, {100, 700}},
        {"left of the primary", leftScreen(), {-1000, 300}, {280, 724}, {-1000, 724}},
        {"left screen's left edge", leftScreen(), {-1280, 0}, {0, 1024}, {-1280, 1024}},
        {"right of the primary",
         {QRectF(1440, 0, 800, 600), 9, {}},
         {1500, 10},
         {60, 590},
         {1500, 590}},
        {"above the primary", aboveScreen(), {50, 1000}, {50, 80}, {50, 80}},
        {"y flipped past the top", primaryScreen(), {0, 1000}, {0, -100}, {0, -100}},
        // The absolute values treat x = 100 as if it were -100: wrong, and kept that way.
        {"a point right of the origin on the left screen",
         leftScreen(),
         {100, 0},
         {1180, 1024},
         {100, 1024}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(NSScreenPointConversion::convertPointToScreenCoordinates(c.screen, c.point),
                  c.converted);
        EXPECT_EQ(NSScreenPointConversion::flipPoint(c.screen, c.point), c.flipped);
        // Flipping twice is the identity.
        EXPECT_EQ(NSScreenPointConversion::flipPoint(
                      c.screen, NSScreenPointConversion::flipPoint(c.screen, c.point)),
                  c.point);
    }
}

} // namespace
