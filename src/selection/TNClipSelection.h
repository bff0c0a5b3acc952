#pragma once
// What the region selection view does with the pointer, as numbers: hover, press, rubber band,
// move and resize by the eight handles, release. The view draws it and tells its delegate;
// this holds the state and the geometry, so it is tested without a display.
// View coordinates: origin at the lower left of the view (its screen), y up. The border frame
// is the region grown by 6 on each side; its handles are those of GKCropBorderGeometry.
#include <QList>
#include <QPointF>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <optional>

enum ClipState : qint32 {
    ClipStateIdle = 0,
    ClipStatePressed = 1,
    ClipStateRubberBand = 2,
    ClipStateSelected = 3,
};

enum DragMode : qint32 {
    DragModeNone = 0,
    DragModeResize = 1,
    DragModeMove = 2,
};

// How a pointer delta maps to the border's width, height and origin.
struct ResizeMultiplyer {
    qint32 widhtMultiplyer = 0;
    qint32 heightMultiplyer = 0;
    qint32 xMultiplyer = 0;
    qint32 yMultiplyer = 0;
};

namespace TNClipGeometry {

constexpr double kContentInset = 6;
constexpr double kMinimumSide = 64;
constexpr double kMinimumImageSide = 20;
constexpr qint64 kClickMs = 500;
constexpr double kEdgeClamp = 12;
constexpr double kNearestLimit = 3000;

QRectF borderFrameFor(const QRectF &contentRect);
QRectF contentRectFor(const QRectF &borderFrame);
// The corners and mid-sides of a border of that size, counter-clockwise from the lower left.
QList<QPointF> handlePositions(const QSizeF &border);
// The handle nearest to point (border coordinates); on a tie the later one.
QPointF anchorPoint(const QPointF &point, const QSizeF &border);
ResizeMultiplyer fillMultiplyer(const QPointF &anchor, const QSizeF &border);
// 0 none, 1 top middle, 2 bottom middle, 3 left middle, 5 bottom left, 6 right middle,
// 7 top left and top right, 8 bottom right; with the words logged for it.
qint32 dragStateFor(const ResizeMultiplyer &m, QString *log = nullptr);
// A side below the minimum goes back, with its origin, to the current border's.
QRectF preventBorderFrameFromGettingTooSmall(const QRectF &proposed, const QRectF &current,
                                             double minimumSide);
// "WxH" of the region, each 4 less.
QString sizeText(const QSizeF &content);

} // namespace TNClipGeometry

class TNClipSelection {
public:
    // type 0: a still clip with a tool bar; 1: a recording. waterImage: the size of the picture
    // the watermark preview places (image mode).
    struct Setup {
        QSizeF bounds;
        quint64 type = 1;
        // The recording's kind: a whole screen (a press is also the release) or a window
        // (no drag; one click starts); otherwise a region.
        bool wholeScreen = false;
        bool appWindow = false;
        std::optional<QSizeF> waterImage;
        bool hasToolbar = false;
    };
    explicit TNClipSelection(const Setup &setup);

    // Back to idle with this region (showClipViewWithFrame:withToolbar:).
    void showWithFrame(const QRectF &contentRect);
    // The one entry by which others set the region.
    void setFrameForContentView(const QRectF &contentRect);
    void setBounds(const QSizeF &bounds) { setup_.bounds = bounds; }

    // The pointer moved: true in idle, where the delegate is to propose a region now;
    // hoverProposed() afterwards remembers it.
    bool mouseMoved() const { return clipState_ == ClipStateIdle; }
    void hoverProposed() { lastContentRect_ = contentRect_; }

    struct Press {
        bool doubleClick = false; // told to the delegate; nothing else happened
        bool releaseNow = false;  // a whole-screen recording: the press is also the release
    };
    // p in view coordinates; inView: the pointer lies in the view's frame; nowMs a clock.
    Press mouseDown(const QPointF &p, bool inView, int clickCount, qint64 nowMs);
    // false when the drag is ignored (a window selection can't be dragged).
    bool mouseDragged(const QPointF &p);

    struct Release {
        bool clipCurrentWindow = false; // a still clip's click: take the window under it
        bool toolbarShown = false;      // recordViewDidShowToolBar: is due
        bool clipFullScreen = false;    // the region is the main screen's frame
        bool startRecording = false;    // window mode: one click starts the recording
    };
    Release mouseUp(qint64 nowMs, const QRectF &mainScreenFrame);

    ClipState clipState() const { return clipState_; }
    DragMode dragMode() const { return dragMode_; }
    qint32 dragState() const { return dragState_; }
    const ResizeMultiplyer &resizeMultiplyer() const { return multiplyer_; }
    bool onlyClipCurrentWindow() const { return onlyClipCurrentWindow_; }
    // The region as last set from outside; a move or resize changes only the frames below.
    QRectF contentRect() const { return contentRect_; }
    // The border's frame, and the hole inside it: the region as it stands.
    QRectF contentFrame() const { return contentFrame_; }
    QRectF contentViewFrame() const { return TNClipGeometry::contentRectFor(contentFrame_); }
    QRectF lastContentRect() const { return lastContentRect_; }
    QPointF anchor() const { return theAnchor_; }
    double minimumSide() const;

private:
    void moveWithTouchPoint(const QPointF &p);
    void resizeWithTouchPoint(const QPointF &p);
    void resetFramesToThisOne(const QRectF &border);

    Setup setup_;
    ClipState clipState_ = ClipStateIdle;
    DragMode dragMode_ = DragModeNone;
    qint32 dragState_ = 0;
    ResizeMultiplyer multiplyer_;
    bool onlyClipCurrentWindow_ = true;
    bool toolbarShown_ = false;
    qint64 lastDate_ = 0;
    QPointF theAnchor_, startPoint_, rectBeginPoint_, rectEndPoint_;
    QRectF contentFrame_, contentRect_, lastContentRect_;
};
