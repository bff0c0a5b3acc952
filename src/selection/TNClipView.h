#pragma once
// The full-window view on which the user marks a region: it dims everything outside the
// region, shows the dashed frame with its handles and the accept bar, and turns the pointer's
// hover, presses and drags into a region (TNClipSelection) and into calls on its delegate.
// Its geometry is kept y up from the view's lower left; Qt's events and painting are y down.
#include "LoupeGeometry.h"
#include "TNClipSelection.h"

#include <QColor>
#include <QImage>
#include <QWidget>
#include <functional>
#include <optional>

class QLabel;
class QPainter;
class QRegion;
class TNButton;
class TNClipView;

class TNClipViewDelegate {
public:
    virtual ~TNClipViewDelegate() = default;
    virtual void clipViewMouseMoved(TNClipView *) {}
    virtual void clipViewClipCurrentWindow(TNClipView *) {}
    virtual void clipViewClipFullScreen(TNClipView *) {}
    virtual void clipViewMouseDoubleClick(TNClipView *) {}
    virtual void recordViewDidShowToolBar(TNClipView *) {}
    virtual void recordStartNote() {}
    virtual void cancelClip() {}
};

class TNClipView : public QWidget {
    Q_OBJECT
public:
    // type 0: a still clip with a tool bar; 1: a recording. wholeScreen / appWindow: the kind
    // of recording, which decides what a press and a drag do.
    struct Kind {
        quint64 type = 1;
        bool wholeScreen = false;
        bool appWindow = false;
    };
    TNClipView(const QRect &frame, const Kind &kind, QWidget *parent = nullptr);

    void setDelegate(TNClipViewDelegate *delegate) { delegate_ = delegate; }
    // Back to idle with this region; the tool bar (may be null) is the still clip's.
    void showClipViewWithFrame(const QRectF &rect, QWidget *toolbar);
    // The one entry by which others set the region (view coordinates, y up).
    void setFrameForContentView(const QRectF &rect);
    QRectF contentRect() const { return selection_.contentRect(); }
    // The hole as it stands after moves and resizes.
    QRectF contentViewFrame() const { return selection_.contentViewFrame(); }
    const TNClipSelection &selection() const { return selection_; }

    double overlayAlpha() const { return overlayAlpha_; }
    void setOverlayAlpha(double alpha);
    // The grey over the whole screen until the pointer first moves.
    bool haveSetClearColor() const { return haveSetClearColor_; }
    void setHaveSetClearColor(bool clear);
    void setBorderColor(const QColor &color);
    void setHideHandleRect(bool hide);
    bool hideHandleRect() const { return hideHandleRect_; }
    // The accept bar goes (the countdown's step).
    void removeIndicatorView();
    QString frameText() const;

    // Accept; the cancel button.
    void startNoteButtonClick();
    void cancelBtnAction();
    // Window mode: one click starts the recording of the overlay registered last.
    std::function<void()> startRegisteredRecording;

    // The main screen's frame in this view's coordinates (a region equal to it is the
    // whole screen).
    void setMainScreenFrame(const QRectF &frame) { mainScreenFrame_ = frame; }
    QPointF viewPoint(const QPointF &widgetPoint) const;
    QRectF widgetRect(const QRectF &viewRect) const;

    // The screen's picture, taken once when the overlay is set up: the loupe enlarges it, and
    // without a compositing manager it stands under the dim, where the desktop would show.
    void setScreenImage(const QImage &picture) { screenImage_ = picture; }
    void setPaintsScreenImage(bool paints);
    // Where the pointer and its arrow are and which screen is under it, or nothing while the
    // pointer is on another screen: the loupe follows it while a region is chosen.
    void setLoupeSource(std::function<std::optional<LoupeGeometry::Input>()> source);
    bool showsLoupe() const;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void press(const QPointF &widgetPoint, int clickCount);
    void release();
    void updateCursor(const QPointF &viewPoint);
    // Repaints where the frame stood and where it stands now.
    void updateAround(const QRectF &borderBefore);
    // TNClipView_loupe.cpp.
    void paintLoupe(QPainter &painter);
    // What the loupe covers in widget coordinates: panel and marks.
    QRegion loupeRegion() const;
    void moveLoupe();
    void resetIndicatorField();
    void buildIndicatorView();

    Kind kind_;
    TNClipSelection selection_;
    TNClipViewDelegate *delegate_ = nullptr;
    QWidget *toolbar_ = nullptr;
    QWidget *indicatorView_ = nullptr;
    QLabel *indicatorField_ = nullptr;
    TNButton *frameTextField_ = nullptr;
    TNButton *okBtn_ = nullptr;
    TNButton *cancelBtn_ = nullptr;
    QColor borderColor_;
    double borderAlpha_ = 1.0;
    double overlayAlpha_ = 0.5;
    bool haveSetClearColor_ = false;
    bool hideHandleRect_ = false;
    bool pressed_ = false;
    QRectF mainScreenFrame_;
    QImage screenImage_;
    bool paintsScreenImage_ = false;
    std::function<std::optional<LoupeGeometry::Input>()> loupeSource_;
    std::optional<LoupeGeometry::Loupe> loupe_;
};
