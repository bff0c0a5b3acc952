#include "TNButtonCell.h"

#include <gtest/gtest.h>

namespace {

struct InsetCase {
    const char *name;
    NSEdgeInsets insets;
    QRectF expected;
};

// From a frame of (5, 7, 100, 30).
const InsetCase kInsetCases[] = {
    {"none: the plain frame", {0, 0, 0, 0}, QRectF(5, 7, 100, 30)},
    {"left and right 10: moved right, same width", {0, 10, 0, 10}, QRectF(15, 7, 100, 30)},
    {"left 10 alone: moved right and 10 wider", {0, 10, 0, 0}, QRectF(15, 7, 110, 30)},
    {"right 10 alone: 10 narrower", {0, 0, 0, 10}, QRectF(5, 7, 90, 30)},
    {"top and bottom 4: moved down, same height", {4, 0, 4, 0}, QRectF(5, 11, 100, 30)},
    {"top 4 alone: moved down and 4 taller", {4, 0, 0, 0}, QRectF(5, 11, 100, 34)},
    {"bottom 6 alone: 6 shorter", {0, 0, 6, 0}, QRectF(5, 7, 100, 24)},
};

} // namespace

TEST(TNButtonCell, InsetsChangeAFrameByTheirDifferences)
{
    for (const InsetCase &c : kInsetCases)
        EXPECT_EQ(frameByInsets(QRectF(5, 7, 100, 30), c.insets), c.expected) << c.name;
}
