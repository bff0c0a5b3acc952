#include "TNClipSelection.h"

#include "GKCropBorderGeometry.h"
#include "Log.h"
#include "PointInRect.h"
#include "SelectionLog.h"

#include <QLineF>
#include <algorithm>
#include <cmath>

namespace TNClipGeometry {

QRectF borderFrameFor(const QRectF &contentRect)
{
    return contentRect.adjusted(-kContentInset, -kContentInset, kContentInset, kContentInset);
}

QRectF contentRectFor(const QRectF &borderFrame)
{
    return borderFrame.adjusted(kContentInset, kContentInset, -kContentInset, -kContentInset);
}

QList<QPointF> handlePositions(const QSizeF &border)
{
    const double w = border.width(), h = border.height();
    return {{0, 0}, {w / 2, 0}, {w, 0}, {w, h / 2}, {w, h}, {w / 2, h}, {0, h}, {0, h / 2}};
}

QPointF anchorPoint(const QPointF &point, const QSizeF &border)
{
    double nearest = kNearestLimit;
    QPointF anchor;
    for (const QPointF &handle : handlePositions(border)) {
        const double distance = QLineF(point, handle).length();
        if (distance <= nearest) { // a tie goes to the later handle
            nearest = distance;
            anchor = handle;
        }
    }
    return anchor;
}

ResizeMultiplyer fillMultiplyer(const QPointF &anchor, const QSizeF &border)
{
    const double x = anchor.x(), y = anchor.y();
    ResizeMultiplyer m;
    m.heightMultiplyer = y == 0 ? -1 : (y == border.height() ? 1 : 0);
    m.widhtMultiplyer = x == 0 ? 1 : (x == border.width() ? -1 : 0);
    m.xMultiplyer = x == 0 ? 1 : 0;
    m.yMultiplyer = y == 0 ? 1 : 0;
    return m;
}

qint32 dragStateFor(const ResizeMultiplyer &m, QString *log)
{
    const auto say = [log](qint32 state, const char *words) {
        if (log)
            *log = QString::fromUtf8(words);
        return state;
    };
    const qint32 hm = m.heightMultiplyer, wm = m.widhtMultiplyer;
    if (m.xMultiplyer == 1) { // the left edge
        if (hm == 1)
            return say(7, "左上");
        if (hm == 0)
            return say(3, "左");
        return say(5, "左下");
    }
    if (hm == -1) { // the bottom edge
        if (wm == -1)
            return say(8, "右下");
        if (wm == 0)
            return say(2, "中下");
    }
    if (wm == -1) {
        if (hm == 0)
            return say(6, "右");
        if (hm == 1)
            return say(7, "右上");
    }
    if (hm == 1 && wm == 0)
        return say(1, "中上");
    return say(0, "其他");
}

QRectF preventBorderFrameFromGettingTooSmall(const QRectF &proposed, const QRectF &current,
                                             double minimumSide)
{
    QRectF rect = proposed;
    if (rect.width() < minimumSide) {
        rect.setX(current.x());
        rect.setWidth(current.width());
    }
    if (rect.height() < minimumSide) {
        rect.setY(current.y());
        rect.setHeight(current.height());
    }
    return rect;
}

QString sizeText(const QSizeF &content)
{
    return QString::asprintf("%.fx%.f", content.width() - 4, content.height() - 4);
}

} // namespace TNClipGeometry

using namespace TNClipGeometry;

TNClipSelection::TNClipSelection(const Setup &setup) : setup_(setup) {}

double TNClipSelection::minimumSide() const
{
    return setup_.waterImage ? kMinimumImageSide : kMinimumSide;
}

void TNClipSelection::showWithFrame(const QRectF &contentRect)
{
    clipState_ = ClipStateIdle;
    toolbarShown_ = false;
    setFrameForContentView(contentRect);
}

void TNClipSelection::setFrameForContentView(const QRectF &contentRect)
{
    contentRect_ = contentRect;
    contentFrame_ = borderFrameFor(contentRect);
}

TNClipSelection::Press TNClipSelection::mouseDown(const QPointF &p, bool inView, int clickCount,
                                                  qint64 nowMs)
{
    Press press;
    if (clickCount == 2) {
        press.doubleClick = true;
        return press;
    }
    if (clipState_ == ClipStateIdle) {
        lastDate_ = nowMs;
        clipState_ = ClipStatePressed;
        if (inView)
            rectBeginPoint_ = p;
    }
    const QRectF border = contentFrame_;
    const QPointF b = p - border.topLeft();
    const QRectF hole = contentRectFor(border);
    if (NSPointInRect(p, hole) && !GKCropBorderGeometry::isInResizeRect(b, border.size())) {
        dragMode_ = DragModeMove;
    } else if (NSPointInRect(p, border)) {
        theAnchor_ = anchorPoint(b, border.size());
        dragMode_ = DragModeResize;
        multiplyer_ = fillMultiplyer(theAnchor_, border.size());
        QString words;
        dragState_ = dragStateFor(multiplyer_, &words);
        capstan::NSLog(lcSelection, "%s", qUtf8Printable(words));
    } else {
        dragMode_ = DragModeNone;
    }
    startPoint_ = p;
    press.releaseNow = setup_.wholeScreen;
    return press;
}

bool TNClipSelection::mouseDragged(const QPointF &p)
{
    if (setup_.appWindow && !setup_.waterImage)
        return false;
    onlyClipCurrentWindow_ = false;
    if (clipState_ == ClipStatePressed || clipState_ == ClipStateRubberBand) {
        clipState_ = ClipStateRubberBand;
        rectEndPoint_ = p;
        if (!setup_.waterImage) {
            const QPointF from = rectBeginPoint_, to = rectEndPoint_;
            setFrameForContentView(QRectF(std::min(from.x(), to.x()), std::min(from.y(), to.y()),
                                          std::abs(from.x() - to.x()),
                                          std::abs(from.y() - to.y())));
        }
        return true;
    }
    if (dragMode_ == DragModeMove)
        moveWithTouchPoint(p);
    else if (dragMode_ == DragModeResize)
        resizeWithTouchPoint(p);
    return true;
}

void TNClipSelection::moveWithTouchPoint(const QPointF &p)
{
    // No clamp: a region may be pushed past the edge of its screen.
    resetFramesToThisOne(contentFrame_.translated(p - startPoint_));
    startPoint_ = p;
}

void TNClipSelection::resizeWithTouchPoint(const QPointF &p)
{
    const QSizeF bounds = setup_.bounds;
    const QPointF q(std::min(std::max(p.x(), kEdgeClamp), bounds.width() - kEdgeClamp),
                    std::min(std::max(p.y(), kEdgeClamp), bounds.height() - kEdgeClamp));
    const ResizeMultiplyer &m = multiplyer_;
    const double dh = m.heightMultiplyer * (q.y() - startPoint_.y());
    const double dw = m.widhtMultiplyer * (startPoint_.x() - q.x());
    const QRectF border = contentFrame_;
    QRectF next(border.x() - m.xMultiplyer * dw, border.y() - m.yMultiplyer * dh,
                border.width() + dw, border.height() + dh);
    if (setup_.waterImage && !setup_.waterImage->isEmpty()) {
        // The placed picture keeps its aspect ratio.
        const double ratio = setup_.waterImage->height() / setup_.waterImage->width();
        switch (dragState_) {
        case 1:
        case 2:
            next.setWidth(next.height() / ratio);
            next.moveLeft(border.center().x() - next.width() / 2);
            break;
        case 3:
        case 5:
        case 6:
        case 8:
            next.setHeight(next.width() * ratio);
            break;
        case 4:
        case 7:
            next.setHeight(next.width() * ratio);
            next.moveTop(border.center().y() - next.height() / 2);
            break;
        default:
            break;
        }
    }
    resetFramesToThisOne(preventBorderFrameFromGettingTooSmall(next, border, minimumSide()));
    startPoint_ = q;
}

void TNClipSelection::resetFramesToThisOne(const QRectF &border)
{
    contentFrame_ = border;
}

TNClipSelection::Release TNClipSelection::mouseUp(qint64 nowMs, const QRectF &mainScreenFrame)
{
    Release release;
    const double minimum = minimumSide();
    if (!toolbarShown_) {
        if (clipState_ == ClipStatePressed && setup_.type == 0) {
            release.clipCurrentWindow = true;
        } else {
            toolbarShown_ = setup_.hasToolbar;
            // A short press with a slip of the hand selects the hovered window, not a sliver.
            if (nowMs - lastDate_ < kClickMs && contentRect_.width() < minimum &&
                contentRect_.height() < minimum)
                setFrameForContentView(lastContentRect_);
            release.toolbarShown = true;
        }
    }
    if (clipState_ == ClipStateRubberBand) {
        QRectF region = contentRect_;
        if (region.width() < minimum)
            region.setWidth(minimum);
        if (region.height() < minimum)
            region.setHeight(minimum);
        setFrameForContentView(region);
    }
    release.clipFullScreen = contentRect_ == mainScreenFrame;
    clipState_ = ClipStateSelected;
    release.startRecording = setup_.appWindow;
    return release;
}
