#include "TNButtonFill.h"

#include <QLinearGradient>
#include <gtest/gtest.h>

namespace {

const QSizeF kSize(80, 30);

TNButtonState state(bool canMouseCustomColor, bool isMouseColor, bool isEntered, bool isOn)
{
    return {kSize, canMouseCustomColor, isMouseColor, isEntered, isOn};
}

struct FillCase {
    const char *name;
    TNButtonState state;
    TNButtonFill::Kind kind;
    QRectF rect;
    QColor color;
};

const FillCase kFillCases[] = {
    {"custom colour, inside: gradient", state(true, false, true, false),
     TNButtonFill::Kind::Gradient, QRectF(0, 0, 80, 30), QColor()},
    {"custom colour wins over mouse colour", state(true, true, true, true),
     TNButtonFill::Kind::Gradient, QRectF(0, 0, 80, 30), QColor()},
    {"custom colour, outside: window background", state(true, true, false, true),
     TNButtonFill::Kind::Solid, QRectF(0, 0, 80, 30), TNButtonColors::windowBackground()},
    {"mouse colour, inside: selection, 2 taller", state(false, true, true, false),
     TNButtonFill::Kind::Solid, QRectF(0, 0, 80, 32), TNButtonColors::selection()},
    {"mouse colour, on, outside: selection", state(false, true, false, true),
     TNButtonFill::Kind::Solid, QRectF(0, 0, 80, 32), TNButtonColors::selection()},
    {"mouse colour, off, outside: nothing", state(false, true, false, false),
     TNButtonFill::Kind::None, QRectF(), QColor()},
    {"neither, inside and on: nothing", state(false, false, true, true), TNButtonFill::Kind::None,
     QRectF(), QColor()},
};

} // namespace

TEST(TNButtonFill, FirstRuleThatFits)
{
    for (const FillCase &c : kFillCases) {
        const TNButtonFill fill = tnButtonFill(c.state);
        EXPECT_EQ(fill.kind, c.kind) << c.name;
        EXPECT_EQ(fill.rect, c.rect) << c.name;
        if (c.kind == TNButtonFill::Kind::Solid) {
            EXPECT_EQ(fill.brush().color(), c.color) << c.name;
        }
        EXPECT_EQ(fill.setsLightGrayBackground, c.kind == TNButtonFill::Kind::Gradient) << c.name;
    }
}

TEST(TNButtonFill, HoverGradientRunsFromCyanAtTheBottomToBlueAtTheTop)
{
    const QBrush brush = tnButtonFill(state(true, false, true, false)).brush();
    ASSERT_EQ(brush.style(), Qt::LinearGradientPattern);
    const auto *gradient = static_cast<const QLinearGradient *>(brush.gradient());
    EXPECT_EQ(gradient->start(), QPointF(0, 30));
    EXPECT_EQ(gradient->finalStop(), QPointF(0, 0));
    EXPECT_EQ(gradient->stops().first().second.rgb(), QColor(64, 226, 255).rgb());
    EXPECT_EQ(gradient->stops().last().second.rgb(), QColor(23, 52, 216).rgb());
}
