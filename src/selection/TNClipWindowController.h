#pragma once
// One screen's overlay of a still clip: the user points at a window or marks a region, and
// a picture of it is taken, leaving out whatever lies over a window taken by a click.
#include "OverlayWindow.h"
#include "ScreenCatalog.h"
#include "TNClipToolbarViewController.h"
#include "TNClipView.h"
#include "WindowServer.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QVariantList>
#include <memory>

class QVariantAnimation;
class TNClipWindowController;
struct Platform;

class TNClipWindowControllerDelegate {
public:
    virtual ~TNClipWindowControllerDelegate() = default;
    virtual void clipWindowControllerDidClipedWithImage(TNClipWindowController *controller,
                                                        const QImage &image) = 0;
    virtual void clipWindowControllerDidCancel(TNClipWindowController *controller) = 0;
    // The pointer went to another screen: its overlay takes the keys.
    virtual void changeKeyWindowWithScreen(const ScreenInfo &screen) = 0;
    // The on-screen windows, front first, as taken when the clip started.
    virtual const QVariantList &arrayRect() const = 0;
};

class TNClipWindowController : public QObject,
                               public TNClipViewDelegate,
                               public TNClipToolbarViewControllerDelegate {
    Q_OBJECT
public:
    TNClipWindowController(TNClipWindowControllerDelegate *delegate, const Platform &platform);
    ~TNClipWindowController() override;

    void startCaptureWithScreen(const ScreenInfo &screen);
    const ScreenInfo &screen() const { return screen_; }
    void setDelegate(TNClipWindowControllerDelegate *delegate) { delegate_ = delegate; }
    void endCapture();
    void clipScreen();
    void makeKeyAndOrderFront();
    void orderOut();
    bool isVisible() const;

    // The view's delegate.
    void clipViewMouseMoved(TNClipView *view) override;
    void clipViewClipCurrentWindow(TNClipView *view) override;
    void clipViewClipFullScreen(TNClipView *) override {}
    void clipViewMouseDoubleClick(TNClipView *view) override;
    void recordViewDidShowToolBar(TNClipView *view) override;
    void cancelClip() override;
    // The tool bar's.
    void clipToolbarViewControllerCancel(TNClipToolbarViewController *) override;
    void clipToolbarViewControllerCliped(TNClipToolbarViewController *) override;

    qint64 lastWindowNumber() const { return lastWindowNumber_; }
    QRectF lastWindowRect() const { return lastWindowRect_; }
    QWidget *window() const { return window_.get(); }
    TNClipView *clipView() const { return clipView_; }
    TNClipToolbarViewController *toolbar() const { return toolbarViewController_; }

private:
    void removeEventMonitor();
    void resetToolBarFrame();
    // The rectangle in the window server's space that the picture is taken of.
    QRectF clipRectInServerSpace() const;

    TNClipWindowControllerDelegate *delegate_;
    const Platform &platform_;
    ScreenInfo screen_;
    std::unique_ptr<QWidget> window_;
    QPointer<TNClipView> clipView_;
    QPointer<TNClipToolbarViewController> toolbarViewController_;
    std::unique_ptr<QObject> eventMonitor_;
    QPointer<QVariantAnimation> flyOut_;
    qint64 lastWindowNumber_ = 0;
    QRectF lastWindowRect_;
};
