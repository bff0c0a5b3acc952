#include "YZButton.h"
#include "HoverEvents.h"
#include "XJLabel.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

QPixmap filled(const QColor &colour)
{
    QPixmap pixmap(16, 16);
    pixmap.fill(colour);
    return pixmap;
}

// A tool button of 32 by 32 at (40, 60) on an active window.
struct ToolOnWindow {
    QWidget window;
    YZButton *button;

    ToolOnWindow()
    {
        window.resize(200, 200);
        button = new YZButton(QRect(40, 60, 32, 32), &window);
        window.show();
        window.activateWindow();
        active = QTest::qWaitForWindowActive(&window);
    }
    bool active = false;

    XJLabel *shownTip() const
    {
        for (XJLabel *label : window.findChildren<XJLabel *>())
            if (label->isVisible())
                return label;
        return nullptr;
    }
};

} // namespace

TEST(YZButton, SwapsItsImagesUnderThePointer)
{
    ToolOnWindow tool;
    ASSERT_TRUE(tool.active);
    const QPixmap plain = filled(Qt::red), selected = filled(Qt::blue);
    tool.button->setDefaultImage(plain);
    tool.button->setSelectedImage(selected);
    tool.button->updateImage();
    EXPECT_EQ(tool.button->image().cacheKey(), plain.cacheKey());
    enter(tool.button);
    EXPECT_TRUE(tool.button->mouseIn());
    EXPECT_EQ(tool.button->image().cacheKey(), selected.cacheKey());
    leave(tool.button);
    EXPECT_EQ(tool.button->image().cacheKey(), plain.cacheKey());
}

TEST(YZButton, ShowsItsTipAboveItselfAndTellsTheDelegate)
{
    ToolOnWindow tool;
    ASSERT_TRUE(tool.active);
    QStringList told;
    tool.button->setMDelegate(
        {[&](YZButton *) { told << "enter"; }, [&](YZButton *) { told << "exited"; }});
    tool.button->setExplainString("Pencil");
    enter(tool.button);
    XJLabel *tip = tool.shownTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->text(), "Pencil");
    EXPECT_EQ(tip->geometry().bottom() + 1, tool.button->geometry().top());
    EXPECT_EQ(tip->x(), 40);
    EXPECT_EQ(tip->width(),
              int(std::ceil(YZButton::measureSinglelineStringSize("Pencil", 12).width())) + 15);
    leave(tool.button);
    EXPECT_EQ(tool.shownTip(), nullptr);
    EXPECT_EQ(told, QStringList({"enter", "exited"}));
}

TEST(YZButton, AnEmptyTipShowsNothingAndKeepsAnEarlierLabel)
{
    ToolOnWindow tool;
    ASSERT_TRUE(tool.active);
    enter(tool.button);
    EXPECT_EQ(tool.shownTip(), nullptr);
    leave(tool.button);

    tool.button->warningLabelHiddenOrShow(tool.button, "Eraser", false);
    ASSERT_NE(tool.shownTip(), nullptr);
    tool.button->warningLabelHiddenOrShow(tool.button, "", true);
    XJLabel *tip = tool.shownTip();
    ASSERT_NE(tip, nullptr);
    EXPECT_EQ(tip->text(), "Eraser");
}
