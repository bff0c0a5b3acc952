#include "NSVertProgressView.h"

#include <QApplication>
#include <QImage>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

const QColor kContainerColour(255, 0, 255);
const QColor kTrackColour(0, 255, 255);
// 10 wide and 100 high at (20, 50) on a magenta container.
const QRect kBar(20, 50, 10, 100);

struct BarOnContainer {
    QWidget container;
    NSVertProgressView *bar;

    BarOnContainer()
    {
        container.resize(60, 200);
        container.setAutoFillBackground(true);
        QPalette colours = container.palette();
        colours.setColor(QPalette::Window, kContainerColour);
        container.setPalette(colours);
        bar = new NSVertProgressView(kBar, &container);
        bar->setTrackColor(kTrackColour);
    }
    QImage picture() { return (QApplication::processEvents(), container.grab().toImage()); }
};

bool near(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) <= 2 && std::abs(a.green() - b.green()) <= 2 &&
           std::abs(a.blue() - b.blue()) <= 2;
}

} // namespace

TEST(NSVertProgressView, StoresAtOnceAndFillsFromTheBottomOnTheEventLoop)
{
    BarOnContainer view;
    view.bar->setProgress(0.5f);
    EXPECT_FLOAT_EQ(view.bar->progress(), 0.5f);
    EXPECT_EQ(view.bar->trackView()->height(), 0);
    const QImage picture = view.picture();
    EXPECT_EQ(view.bar->trackView()->geometry(), QRect(0, 50, 10, 50));
    EXPECT_TRUE(near(picture.pixelColor(kBar.center().x(), kBar.top() + 75), kTrackColour));
    EXPECT_TRUE(near(picture.pixelColor(kBar.center().x(), kBar.top() + 25),
                     NSVertProgressView::backgroundColor()));
    // Rounded by half the width: the corners show the container.
    EXPECT_EQ(picture.pixelColor(kBar.left(), kBar.top()), kContainerColour);
    EXPECT_EQ(picture.pixelColor(kBar.right(), kBar.bottom()), kContainerColour);
}

TEST(NSVertProgressView, ProgressTwoFillsTwiceTheHeightCutAtTheEdge)
{
    BarOnContainer view;
    view.bar->setProgress(2.0f);
    const QImage picture = view.picture();
    EXPECT_EQ(view.bar->trackView()->height(), 200);
    EXPECT_EQ(view.bar->trackView()->geometry().bottom(), kBar.height() - 1);
    for (int y = kBar.top() + 10; y < kBar.bottom() - 10; y += 10)
        EXPECT_TRUE(near(picture.pixelColor(kBar.center().x(), y), kTrackColour)) << y;
    // Nothing of the fill shows above the bar.
    EXPECT_EQ(picture.pixelColor(kBar.center().x(), kBar.top() - 1), kContainerColour);
    EXPECT_EQ(picture.pixelColor(kBar.center().x(), kBar.top() - 50), kContainerColour);
}

TEST(NSVertProgressViewThreads, SetProgressFromAnotherThread)
{
    BarOnContainer view;
    std::atomic<bool> done{false};
    std::thread audio([&] {
        for (int i = 0; i <= 2000; ++i)
            view.bar->setProgress(float(i % 101) / 100.0f);
        done = true;
    });
    while (!done)
        QApplication::processEvents();
    audio.join();
    QApplication::processEvents();
    // The last value, 2000 % 101 = 81 per cent.
    EXPECT_EQ(view.bar->trackView()->height(), 81);
}
