// The region selection view driven by mouse events as a window system delivers them, and what
// it draws: dim outside, clear inside, the frame with or without handles.
#include "TNClipView.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class Delegate : public TNClipViewDelegate {
public:
    void clipViewMouseMoved(TNClipView *view) override
    {
        ++moves;
        view->setFrameForContentView(hover);
    }
    void recordViewDidShowToolBar(TNClipView *) override { ++shown; }
    void recordStartNote() override { ++accepted; }
    void cancelClip() override { ++cancelled; }

    QRectF hover{100, 100, 300, 200}; // view coordinates, y up
    int moves = 0, shown = 0, accepted = 0, cancelled = 0;
};

void send(QWidget *widget, QEvent::Type type, QPoint at, Qt::MouseButtons buttons,
          Qt::MouseButton button = Qt::NoButton)
{
    const QPointF local(at);
    QMouseEvent event(type, local, widget->mapToGlobal(local), button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

// Widget points are y down: view point (x, y) is widget point (x, 600 - y).
QPoint at(double x, double y)
{
    return QPoint(int(x), int(600 - y));
}

class TNClipViewTest : public testing::Test {
protected:
    void make(TNClipView::Kind kind)
    {
        view = std::make_unique<TNClipView>(QRect(0, 0, 800, 600), kind);
        view->setDelegate(&delegate);
        view->setMainScreenFrame(QRectF(0, 0, 800, 600));
        view->showClipViewWithFrame(QRectF(0, 0, 800, 600), nullptr);
    }

    void drag(QPoint from, QPoint to)
    {
        send(view.get(), QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
        send(view.get(), QEvent::MouseMove, (from + to) / 2, Qt::LeftButton);
        send(view.get(), QEvent::MouseMove, to, Qt::LeftButton);
        send(view.get(), QEvent::MouseButtonRelease, to, Qt::NoButton, Qt::LeftButton);
    }

    QImage render() const
    {
        QImage image(view->size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        view->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    Delegate delegate;
    std::unique_ptr<TNClipView> view;
};

TEST_F(TNClipViewTest, HoverProposesABandIsWidenedAndTheLabelShowsFourLess)
{
    make({1, false, false});
    send(view.get(), QEvent::MouseMove, at(500, 500), Qt::NoButton);
    EXPECT_EQ(delegate.moves, 1);
    EXPECT_EQ(view->contentRect(), delegate.hover);

    drag(at(200, 100), at(210, 400));
    EXPECT_EQ(view->contentRect(), QRectF(200, 100, 64, 300));
    EXPECT_EQ(view->frameText(), "60x296");
    EXPECT_EQ(delegate.shown, 1);
    send(view.get(), QEvent::MouseMove, at(600, 50), Qt::NoButton);
    EXPECT_EQ(delegate.moves, 1) << "no hover once a region stands";

    // Moved by its inside, the region follows the pointer; the accept bar's buttons work.
    drag(at(230, 250), at(330, 200));
    EXPECT_EQ(view->contentViewFrame(), QRectF(300, 50, 64, 300));
    for (QAbstractButton *button : view->findChildren<QAbstractButton *>())
        if (button->accessibleDescription() == "okBtn" ||
            button->accessibleDescription() == "cancelBtn")
            button->click();
    EXPECT_EQ(delegate.accepted, 1);
    EXPECT_EQ(delegate.cancelled, 1);
}

TEST_F(TNClipViewTest, DimsOutsideClearsInsideAndHidesTheHandlesOnceAccepted)
{
    make({1, false, false});
    view->setFrameForContentView(QRectF(100, 100, 300, 200)); // widget rows 300..500
    QImage image = render();
    EXPECT_NEAR(qAlpha(image.pixel(50, 50)), 0.7 * 255, 3) << "0.5 over the first grey";
    EXPECT_NEAR(qAlpha(image.pixel(250, 400)), 0.4 * 255, 3) << "the first grey alone";

    view->setHaveSetClearColor(true);
    image = render();
    EXPECT_NEAR(qAlpha(image.pixel(50, 50)), 0.5 * 255, 3);
    EXPECT_EQ(qAlpha(image.pixel(250, 400)), 0);
    // The upper left handle straddles the region's corner: a white centre at (100, 300).
    const auto white = [](QRgb c) { return qRed(c) > 230 && qGreen(c) > 230 && qBlue(c) > 230; };
    EXPECT_TRUE(white(image.pixel(100, 300)));

    view->setHideHandleRect(true);
    view->setOverlayAlpha(0.1);
    image = render();
    EXPECT_FALSE(white(image.pixel(100, 300)));
    EXPECT_NEAR(qAlpha(image.pixel(50, 50)), 0.1 * 255, 3);
}

TEST_F(TNClipViewTest, AWindowIsTakenWithOneClickAndNotDragged)
{
    make({1, false, true});
    int starts = 0;
    view->startRegisteredRecording = [&starts] { ++starts; };
    send(view.get(), QEvent::MouseMove, at(500, 500), Qt::NoButton);
    drag(at(150, 150), at(600, 500));
    EXPECT_EQ(view->contentRect(), delegate.hover);
    EXPECT_EQ(starts, 1);
    EXPECT_EQ(view->findChildren<QAbstractButton *>().size(), 3) << "the accept bar's three";
    const QRgb corner = render().pixel(100, 300);
    EXPECT_FALSE(qRed(corner) > 230 && qGreen(corner) > 230) << "a window's frame is not drawn";
}

TEST_F(TNClipViewTest, TheLoupeFollowsThePointerUntilARegionStands)
{
    make({1, false, false});
    view->setHaveSetClearColor(true);
    // The screen as it was: red left of x 400, blue right of it.
    QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::blue);
    for (int y = 0; y < 600; ++y)
        for (int x = 0; x < 400; ++x)
            picture.setPixelColor(x, y, Qt::red);
    view->setScreenImage(picture);
    std::optional<LoupeGeometry::Input> input =
        LoupeGeometry::Input{{300, 400}, {12, 20}, {1, 1}, {0, 0, 800, 600}};
    view->setLoupeSource([&input] { return input; });
    const auto colour = [this](int x, int y) { return render().pixelColor(x, y); };
    const auto reddish = [](QColor c) { return c.red() > 200 && c.blue() < 60; };
    const auto bluish = [](QColor c) { return c.blue() > 200 && c.red() < 60; };

    // The panel's lower left at (331, 360) y up: its picture is widget rows 160 to 210.
    send(view.get(), QEvent::MouseMove, at(300, 400), Qt::NoButton);
    EXPECT_TRUE(reddish(colour(345, 170))) << colour(345, 170).name().toStdString();
    // On the border between the colours the enlarged piece shows both, left and right.
    input->mouse = {400, 400};
    send(view.get(), QEvent::MouseMove, at(400, 400), Qt::NoButton);
    EXPECT_TRUE(reddish(colour(441, 170)));
    EXPECT_TRUE(bluish(colour(501, 170)));
    // The pointer on another screen: none here.
    input.reset();
    send(view.get(), QEvent::MouseMove, at(400, 400), Qt::NoButton);
    EXPECT_FALSE(bluish(colour(501, 170)));

    // Once a region stands, it is gone.
    input = LoupeGeometry::Input{{400, 400}, {12, 20}, {1, 1}, {0, 0, 800, 600}};
    send(view.get(), QEvent::MouseMove, at(400, 400), Qt::NoButton);
    ASSERT_TRUE(bluish(colour(501, 170)));
    drag(at(100, 100), at(300, 300));
    EXPECT_FALSE(bluish(colour(501, 170)));
    EXPECT_FALSE(view->showsLoupe());
}

TEST_F(TNClipViewTest, WithoutACompositorTheScreenAsItWasStandsUnderTheDim)
{
    make({1, false, true});
    EXPECT_FALSE(view->showsLoupe()) << "a window recording has no loupe";
    QImage picture(800, 600, QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor(200, 100, 0));
    view->setScreenImage(picture);
    view->setPaintsScreenImage(true);
    view->setHaveSetClearColor(true);
    view->setFrameForContentView(QRectF(100, 100, 300, 200)); // widget rows 300..500
    const QImage image = render();
    EXPECT_EQ(image.pixelColor(250, 400), QColor(200, 100, 0)) << "clear in the hole";
    EXPECT_EQ(qAlpha(image.pixel(50, 50)), 255) << "opaque: the window shows its own pixels";
    EXPECT_NEAR(qRed(image.pixel(50, 50)), 100, 3) << "dimmed by half outside";
}

} // namespace
