#include "CustomPopover.h"
#include "PopViewController.h"

#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>

TEST(CustomPopover, OpensOnThePreferredEdge)
{
    const QRect anchor(100, 100, 40, 20);
    const QSize popup(60, 30);
    EXPECT_EQ(popoverPosition(anchor, popup, NSRectEdge::MinY), QPoint(90, 120));
    EXPECT_EQ(popoverPosition(anchor, popup, NSRectEdge::MaxY), QPoint(90, 70));
    EXPECT_EQ(popoverPosition(anchor, popup, NSRectEdge::MaxX), QPoint(140, 95));
    EXPECT_EQ(popoverPosition(anchor, popup, NSRectEdge::MinX), QPoint(40, 95));
}

TEST(CustomPopover, HasADarkFrameAndClosesWhenTheUserClicksOutside)
{
    QWidget window;
    window.resize(300, 300);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    auto *controller = new PopViewController;
    CustomPopover popover(QRect(0, 0, 80, 40), controller, &window);
    popover.showRelativeToRect(QRect(10, 10, 20, 20), &window, NSRectEdge::MinY);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&popover));
    EXPECT_TRUE(popover.isVisible());
    EXPECT_EQ(popover.grab().toImage().pixelColor(40, 20).rgb(),
              PopViewController::frameColor().rgb());

    // Through the window system, as a real click comes.
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(250, 250));
    QApplication::processEvents();
    EXPECT_FALSE(popover.isVisible());
}
