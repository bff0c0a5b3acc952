#include "TNButton.h"
#include "HoverEvents.h"
#include "LogCapture.h"
#include "TNButtonFill.h"

#include <QImage>
#include <QTest>
#include <gtest/gtest.h>

namespace {

const QColor kParentColour(255, 0, 255);

// A button of 80 by 30 at (10, 10) on a magenta window.
struct ButtonOnWindow {
    QWidget window;
    TNButton *button;

    explicit ButtonOnWindow(TNButtonOrigin origin)
    {
        window.resize(100, 60);
        window.setAutoFillBackground(true);
        QPalette colours = window.palette();
        colours.setColor(QPalette::Window, kParentColour);
        window.setPalette(colours);
        button = new TNButton(&window, origin);
        button->setGeometry(10, 10, 80, 30);
    }

    QImage picture() { return window.grab().toImage(); }
};

} // namespace

TEST(TNButton, SwitchedOnButtonKeepsTheSelectionColourAfterThePointerLeft)
{
    ButtonOnWindow on(TNButtonOrigin::Form);
    on.button->setIsMouseColor(true);
    on.button->setCheckable(true);
    on.button->setChecked(true);
    enter(on.button);
    leave(on.button);
    ASSERT_FALSE(on.button->isEntered());
    const QImage picture = on.picture();
    EXPECT_EQ(picture.pixelColor(50, 25).rgb(), TNButtonColors::selection().rgb());
    // The 2 extra points are cut at the button's lower edge.
    EXPECT_EQ(picture.pixelColor(50, 39).rgb(), TNButtonColors::selection().rgb());
    EXPECT_EQ(picture.pixelColor(50, 41), kParentColour);

    ButtonOnWindow off(TNButtonOrigin::Form);
    off.button->setIsMouseColor(true);
    enter(off.button);
    EXPECT_EQ(off.picture().pixelColor(50, 25).rgb(), TNButtonColors::selection().rgb());
    leave(off.button);
    EXPECT_EQ(off.picture().pixelColor(50, 25), kParentColour);
}

TEST(TNButton, AButtonMadeInCodeFollowsThePointerOnlyOnceAskedTo)
{
    ButtonOnWindow code(TNButtonOrigin::Code);
    code.button->setIsMouseColor(true);
    int entered = 0;
    code.button->setMouseEnteredBlock([&](TNButton *, QEvent *) { ++entered; });
    enter(code.button);
    EXPECT_FALSE(code.button->isEntered());
    EXPECT_EQ(entered, 0);

    code.button->setTracksMouse(true);
    LogCapture log;
    enter(code.button);
    EXPECT_TRUE(code.button->isEntered());
    EXPECT_EQ(entered, 1);
    EXPECT_TRUE(log.contains("mouseEntered"));
}

TEST(TNButton, PressRunsTheDownClosureAfterReleaseAndNeverTheUpClosure)
{
    ButtonOnWindow pressed(TNButtonOrigin::Form);
    int downs = 0, ups = 0, clicks = 0;
    pressed.button->setMouseDownBlock([&](TNButton *, QEvent *) {
        // The press is over by the time the closure runs.
        EXPECT_EQ(clicks, downs + 1);
        ++downs;
    });
    pressed.button->setMouseUpBlock([&](TNButton *, QEvent *) { ++ups; });
    QObject::connect(pressed.button, &QAbstractButton::clicked, [&] { ++clicks; });
    QTest::mouseClick(pressed.button, Qt::LeftButton);
    QTest::mouseClick(pressed.button, Qt::LeftButton);
    EXPECT_EQ(downs, 2);
    EXPECT_EQ(ups, 0);
    EXPECT_TRUE(pressed.button->mouseUpBlock());
}
