// The region selection's pointer rules: hover, click, rubber band, move, resize, release.
// Points are view points, origin at the lower left, y up.
#include "TNClipSelection.h"
#include "LogCapture.h"

#include <gtest/gtest.h>

namespace {

const QSizeF kScreen(1000, 800);
const QRectF kMainScreen(0, 0, 1000, 800);
const QRectF kHover(100, 100, 300, 200); // the window under the pointer

TNClipSelection regionSelection(std::optional<QSizeF> waterImage = std::nullopt)
{
    TNClipSelection selection({kScreen, 1, false, false, waterImage, false});
    selection.showWithFrame(QRectF());
    selection.setFrameForContentView(kHover);
    selection.hoverProposed();
    return selection;
}

// A press at from, a drag through to, a release at releaseMs after the press.
void drag(TNClipSelection &s, QPointF from, QPointF to, qint64 releaseMs)
{
    s.mouseDown(from, true, 1, 0);
    s.mouseDragged(to);
    s.mouseUp(releaseMs, kMainScreen);
}

// A region standing after a rubber band from its lower left to its upper right.
TNClipSelection selected(const QRectF &region, std::optional<QSizeF> waterImage = std::nullopt)
{
    TNClipSelection s = regionSelection(waterImage);
    s.setFrameForContentView(region);
    s.mouseDown(region.topLeft(), true, 1, 0);
    s.mouseUp(1000, kMainScreen);
    EXPECT_EQ(s.clipState(), ClipStateSelected);
    return s;
}

TEST(TNClipSelectionTest, AClickKeepsTheHoveredRegionAndAShortSlipReturnsToIt)
{
    for (qint64 held : {100, 5000}) {
        SCOPED_TRACE(held);
        TNClipSelection s = regionSelection();
        EXPECT_TRUE(s.mouseMoved());
        s.mouseDown({600, 600}, true, 1, 0);
        EXPECT_EQ(s.clipState(), ClipStatePressed);
        EXPECT_FALSE(s.mouseMoved()) << "hover ends with the press";
        const TNClipSelection::Release release = s.mouseUp(held, kMainScreen);
        EXPECT_EQ(s.contentRect(), kHover);
        EXPECT_EQ(s.clipState(), ClipStateSelected);
        EXPECT_TRUE(release.toolbarShown) << "a recording has no tool bar: told on every release";
        EXPECT_FALSE(release.startRecording);
    }
    // A few points of drag: within half a second the hand slipped; later it meant a region,
    // which grows to the minimum at its origin.
    TNClipSelection quick = regionSelection();
    drag(quick, {600, 600}, {605, 603}, 300);
    EXPECT_EQ(quick.contentRect(), kHover);
    EXPECT_FALSE(quick.onlyClipCurrentWindow());
    TNClipSelection slow = regionSelection();
    drag(slow, {600, 600}, {605, 603}, 700);
    EXPECT_EQ(slow.contentRect(), QRectF(600, 600, 64, 64));
}

TEST(TNClipSelectionTest, RubberBandsAreNormalisedAndWidenedToTheMinimum)
{
    TNClipSelection band = regionSelection();
    drag(band, {200, 100}, {210, 400}, 1000);
    EXPECT_EQ(band.contentRect(), QRectF(200, 100, 64, 300));
    EXPECT_EQ(band.contentFrame(), QRectF(194, 94, 76, 312));

    TNClipSelection down = regionSelection(), up = regionSelection();
    drag(down, {400, 100}, {100, 300}, 1000); // from the lower right to the upper left
    drag(up, {100, 300}, {400, 100}, 1000);
    EXPECT_EQ(down.contentRect(), QRectF(100, 100, 300, 200));
    EXPECT_EQ(up.contentRect(), down.contentRect());

    TNClipSelection whole = regionSelection();
    whole.mouseDown({0, 0}, true, 1, 0);
    whole.mouseDragged({1000, 800});
    EXPECT_TRUE(whole.mouseUp(1000, kMainScreen).clipFullScreen);
}

TEST(TNClipSelectionTest, MovesGoPastTheEdgeResizesStopTwelveShortOfIt)
{
    TNClipSelection s = selected(QRectF(100, 100, 200, 200));
    s.mouseDown({200, 200}, true, 1, 0);
    EXPECT_EQ(s.dragMode(), DragModeMove);
    s.mouseDragged({-300, 250});
    EXPECT_EQ(s.contentViewFrame(), QRectF(-400, 150, 200, 200));
    EXPECT_EQ(s.contentRect(), QRectF(100, 100, 200, 200)) << "set from outside only";
    s.mouseUp(5000, kMainScreen);
    EXPECT_EQ(s.clipState(), ClipStateSelected);

    // The right middle handle, pulled far past the right edge of the screen.
    TNClipSelection r = selected(QRectF(100, 100, 200, 200)); // border (94, 94, 212, 212)
    r.mouseDown({305, 200}, true, 1, 0);
    EXPECT_EQ(r.dragMode(), DragModeResize);
    EXPECT_EQ(r.dragState(), 6);
    r.mouseDragged({2000, 200});
    EXPECT_EQ(r.contentFrame(), QRectF(94, 94, 212 + (988 - 305), 212));
    // A press outside the frame does nothing to it.
    r.mouseDown({900, 50}, true, 1, 0);
    EXPECT_EQ(r.dragMode(), DragModeNone);
}

TEST(TNClipSelectionTest, EachHandleHasItsDragStateAndBelowTheMinimumOnlyThatAxisFreezes)
{
    const QRectF region(100, 100, 200, 200); // border (94, 94, 212, 212)
    // Presses 1 inside each handle position, counter-clockwise from the lower left.
    const struct {
        QPointF press;
        qint32 state;
        const char *words;
    } handles[] = {
        {{95, 95}, 5, "左下"},  {{200, 95}, 2, "中下"},  {{305, 95}, 8, "右下"},
        {{305, 200}, 6, "右"},  {{305, 305}, 7, "右上"}, {{200, 305}, 1, "中上"},
        {{95, 305}, 7, "左上"}, {{95, 200}, 3, "左"},
    };
    for (const auto &h : handles) {
        SCOPED_TRACE(h.words);
        TNClipSelection s = selected(region);
        LogCapture log;
        s.mouseDown(h.press, true, 1, 0);
        EXPECT_EQ(s.dragMode(), DragModeResize);
        EXPECT_EQ(s.dragState(), h.state);
        EXPECT_TRUE(log.contains(QString::fromUtf8(h.words)))
            << log.lines().join('|').toStdString();
    }

    // The upper right corner dragged left past the minimum width and up: the width stays.
    TNClipSelection s = selected(region);
    s.mouseDown({305, 305}, true, 1, 0);
    s.mouseDragged({150, 400});
    EXPECT_EQ(s.contentFrame(), QRectF(94, 94, 212, 212 + 95));
    // Then down past the minimum height and right: the height stays, the width follows.
    s.mouseDragged({200, 100});
    EXPECT_EQ(s.contentFrame(), QRectF(94, 94, 212 + 50, 307));
}

TEST(TNClipSelectionTest, WindowModeIgnoresDragsAndOneClickStarts)
{
    TNClipSelection s({kScreen, 1, false, true, std::nullopt, false});
    s.setFrameForContentView(kHover);
    s.hoverProposed();
    s.mouseDown({200, 200}, true, 1, 0);
    EXPECT_FALSE(s.mouseDragged({600, 600}));
    EXPECT_EQ(s.contentRect(), kHover);
    EXPECT_TRUE(s.mouseUp(2000, kMainScreen).startRecording);

    TNClipSelection whole({kScreen, 1, true, false, std::nullopt, false});
    EXPECT_TRUE(whole.mouseDown({10, 10}, true, 1, 0).releaseNow);
    EXPECT_TRUE(whole.mouseDown({10, 10}, true, 2, 0).doubleClick);
}

TEST(TNClipSelectionTest, AStillClipTakesTheWindowOnAClickAndShowsItsToolBarOnce)
{
    TNClipSelection s({kScreen, 0, false, false, std::nullopt, true});
    s.setFrameForContentView(kHover);
    s.mouseDown({200, 200}, true, 1, 0);
    EXPECT_TRUE(s.mouseUp(100, kMainScreen).clipCurrentWindow);

    TNClipSelection band({kScreen, 0, false, false, std::nullopt, true});
    band.mouseDown({200, 200}, true, 1, 0);
    band.mouseDragged({400, 400});
    EXPECT_TRUE(band.mouseUp(1000, kMainScreen).toolbarShown);
    band.mouseDown({300, 300}, true, 1, 2000);
    band.mouseDragged({310, 310});
    EXPECT_FALSE(band.mouseUp(3000, kMainScreen).toolbarShown) << "already shown";
}

TEST(TNClipSelectionTest, APlacedPictureKeepsItsAspectAndMayShrinkToTwenty)
{
    // A 200 x 100 picture placed at (100, 100, 100, 50): border (94, 94, 112, 62).
    TNClipSelection s = selected(QRectF(100, 100, 100, 50), QSizeF(200, 100));
    EXPECT_EQ(s.minimumSide(), 20);
    s.mouseDown({205, 125}, true, 1, 0); // the right middle handle
    ASSERT_EQ(s.dragState(), 6);
    s.mouseDragged({255, 125});
    EXPECT_EQ(s.contentFrame(), QRectF(94, 94, 162, 81));
    // The top middle handle keeps the centre across.
    TNClipSelection top = selected(QRectF(100, 100, 100, 50), QSizeF(200, 100));
    top.mouseDown({150, 155}, true, 1, 0);
    ASSERT_EQ(top.dragState(), 1);
    top.mouseDragged({150, 175}); // 20 up: 82 high, 164 wide around x 150
    EXPECT_EQ(top.contentFrame(), QRectF(150 - 82, 94, 164, 82));
    // A rubber band does not change a placed picture.
    TNClipSelection band = regionSelection(QSizeF(200, 100));
    drag(band, {600, 600}, {700, 700}, 1000);
    EXPECT_EQ(band.contentRect(), kHover);

    EXPECT_EQ(TNClipGeometry::sizeText(QSizeF(300, 200)), "296x196");
}

} // namespace
