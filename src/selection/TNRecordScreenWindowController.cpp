#include "TNRecordScreenWindowController.h"

#include "CircleDownCounter.h"
#include "EncodeManager.h"
#include "Log.h"
#include "Platform.h"
#include "Pointer.h"
#include "RecordTypes.h"
#include "SelectionLog.h"
#include "SettingsKeys.h"
#include "TNRecordManager.h"
#include "UserDefaults.h"

#include <QRegion>
#include <QWindow>
#include <cmath>

using capstan::NSLog;

namespace {
// The first bit rate the encoder gets before the quality's own; kept for the encoder's
// order of settings.
constexpr qint64 kInitialVideoBitrate = 3145728;
} // namespace

QRectF selectedRegionForFrame(const QRectF &frame)
{
    return QRectF(2 * std::ceil(frame.x() / 2), 2 * std::ceil(frame.y() / 2),
                  2 * std::floor(frame.width() / 2) - 2, 2 * std::floor(frame.height() / 2) - 2);
}

QRectF startingRegionForScreen(const QRectF &screenFrame)
{
    return QRectF(0, 0, std::floor(screenFrame.width() / 4) * 4,
                  std::floor(screenFrame.height() / 4) * 4);
}

TNRecordScreenWindowController::TNRecordScreenWindowController(TNRecordManager &delegate,
                                                               RecordScreenHost &host,
                                                               const Platform &platform,
                                                               const ScreenInfo &screen)
    : delegate_(&delegate), host_(host), platform_(platform), screen_(screen)
{}

bool TNRecordScreenWindowController::isFullScreenOnSeveral() const
{
    return delegate_ && delegate_->recordVideoType() == VideoTypeFullScreen &&
           platform_.screens->screens().size() >= 2;
}

std::optional<ScreenInfo> TNRecordScreenWindowController::targetScreen() const
{
    const QList<ScreenInfo> screens = platform_.screens->screens();
    // A pop-up with only its empty item gives no index: the pointer's screen serves.
    const int index = host_.screenItemIndex() - 1;
    if (isFullScreenOnSeveral() && index >= 0 && index < screens.size())
        return screens.at(index);
    const QPointF pointer = platform_.pointer->mouseLocation();
    for (const ScreenInfo &info : screens) {
        if (info.frame.contains(pointer))
            return info;
    }
    return platform_.screens->mainScreen();
}

TNRecordScreenWindowController *TNRecordScreenWindowController::actingController()
{
    if (!delegate_ || !isFullScreenOnSeveral())
        return this;
    const std::optional<ScreenInfo> target = targetScreen();
    for (const auto &controller : delegate_->recordWindowControllerArray()) {
        if (target && controller->screen() == *target)
            return static_cast<TNRecordScreenWindowController *>(controller.get());
    }
    return this;
}

TNClipView *TNRecordScreenWindowController::actingView()
{
    return actingController()->recordScreenView_;
}

bool TNRecordScreenWindowController::wholeScreen() const
{
    return delegate_ && delegate_->recordVideoType() == VideoTypeFullScreen;
}

void TNRecordScreenWindowController::startRecorderScreen()
{
    const QRectF region = startingRegionForScreen(screen_.frame);
    // A whole screen is taken at once: no window to show for it.
    if (!wholeScreen()) {
        makeWindow();
        recordScreenView_->showClipViewWithFrame(region, nullptr);
    }
    const std::optional<ScreenInfo> target = targetScreen();
    if (target && *target == screen_) {
        lastWindowRect_ = region;
        selectedScreen_ = screen_;
    }
    TNRecordScreenWindowController *acting = actingController();
    if (wholeScreen()) {
        acting->clipViewMouseMoved(acting->recordScreenView_);
        acting->startNoteButtonClick();
    } else {
        addEventMonitor();
    }
    host_.setRecordWC(this);
}

void TNRecordScreenWindowController::clipViewMouseMoved(TNClipView *)
{
    TNClipView *view = actingView();
    if (!delegate_ || delegate_->isDisableChangeScreen())
        return;
    // The grey was there only until the pointer first moved.
    if (view && !view->haveSetClearColor())
        view->setHaveSetClearColor(true);
    if (wholeScreen())
        lastWindowRect_ = startingRegionForScreen(screen_.frame);
    else
        ChooseWindowRectInScreen(delegate_->arrayRect());
    // A window hanging off the left or bottom of the screen is cut to it.
    QRectF &rect = lastWindowRect_;
    if (rect.x() < 0 && !delegate_->isDisableChangeScreen())
        rect = QRectF(0, rect.y(), std::floor((rect.width() + rect.x()) / 4) * 4,
                      std::floor(rect.height() / 4) * 4);
    if (rect.y() < 0)
        rect = QRectF(rect.x(), 0, std::floor(rect.width() / 4) * 4,
                      std::floor((rect.height() + rect.y()) / 4) * 4);
    if (const std::optional<ScreenInfo> target = targetScreen()) {
        delegate_->setScreen(*target);
        delegate_->setScreenNumber(target->number);
    }
    if (view)
        view->setFrameForContentView(lastWindowRect_);
}

void TNRecordScreenWindowController::recordViewDidShowToolBar(TNClipView *)
{
    if (delegate_)
        delegate_->recordScreenWindowControllerDidSelectRegion(this);
    // Return and Escape go to the screen that holds the region.
    makeKeyAndOrderFront();
}

void TNRecordScreenWindowController::startNoteButtonClick()
{
    // Once accepted, the overlay takes no second start (another screen's overlay may
    // ask again for a whole-screen recording on this one).
    if (status_ != OverlayStatusIdle || !delegate_ || delegate_->isDisableChangeScreen())
        return;
    recordStartNote();
}

void TNRecordScreenWindowController::recordStartNote()
{
    if (!delegate_ || delegate_->isDisableChangeScreen())
        return;
    if (isFullScreenOnSeveral() && host_.screenItemCount() >= 2)
        selectedScreen_ = targetScreen();
    else if (!selectedScreen_)
        selectedScreen_ = targetScreen();
    if (selectedScreen_) {
        delegate_->setScreen(*selectedScreen_);
        delegate_->setScreenNumber(selectedScreen_->number);
    }
    delegate_->setIsDisableChangeScreen(true);
    delegate_->recordScreenWindowControllerRemoveEventMonitor();
    // From here the frame lets the pointer through to what is recorded.
    if (window_ && window_->windowHandle())
        window_->windowHandle()->setFlag(Qt::WindowTransparentForInput, true);
    if (delegate_->screen())
        delegate_->removeFirstOtherScreenController(*delegate_->screen());
    if (!delegate_)
        return; // this overlay was the other screen's
    TNClipView *view = actingView();
    QRectF frame = lastWindowRect_;
    if (view) {
        view->setHideHandleRect(true);
        view->setBorderColor(Qt::cyan);
        view->removeIndicatorView();
        frame = view->contentViewFrame();
        // The overlay stays out of the picture.
        delegate_->setExceptWinodwArray({CGWindowID(view->window()->winId())});
        view->setOverlayAlpha(0.1);
        // Only the frame remains a window: a screen without a compositing manager shows a
        // translucent window's pixels as they are, and the recorded region would be dark.
        const QRect hole = view->widgetRect(frame).toAlignedRect();
        const QRect ring = view->widgetRect(TNClipGeometry::borderFrameFor(frame)).toAlignedRect();
        frameMask_ = QRegion(ring).subtracted(QRegion(hole));
        view->window()->setMask(frameMask_);
    }
    selectedRegion_ = selectedRegionForFrame(frame);
    showCircleDownCounter();
}

void TNRecordScreenWindowController::cancelClip()
{
    cancelSelection();
}

void TNRecordScreenWindowController::showCircleDownCounter()
{
    delegate_->setIsDisableChangeScreen(true);
    host_.disableSourceControls();
    TNClipView *view = actingView();
    if (view)
        view->removeIndicatorView();
    float seconds = platform_.defaults->floatForKey(QString::fromLatin1(Keys::RecordTimeDuration));
    if (std::isnan(seconds))
        seconds = 3.0f;
    // No countdown of no length: a counter would never finish.
    const bool counting = host_.isShowReverseTime() && seconds > 0;
    if (counting && !view && wholeScreen())
        view = actingController()->makeCounterWindow();
    if (!counting || !view) {
        startRecording();
        return;
    }
    // The counter stands in the middle of the region, which is part of the window again
    // while it counts.
    const QRect hole = view->widgetRect(view->contentViewFrame()).toAlignedRect();
    counterHost_ = new QWidget(view);
    counterHost_->setGeometry(hole);
    counterHost_->setAttribute(Qt::WA_TransparentForMouseEvents);
    counterHost_->show();
    const int side = circleDownCounterSide(QSizeF(hole.size()));
    CircleCounterView *counter = CircleDownCounter::showCircleDownWithSeconds(
        seconds, counterHost_, QSize(side, side), 0, int(seconds));
    counter->setDelegate(this);
    counter->setNumberColor(Qt::white);
    counter->setNumberFont(CircleCounterView::courierBold(60));
    counter->setCircleColor(Qt::white);
    counter->setCircleBorderWidth(10);
    // Round: without a compositing manager the counter's transparent corners would show black.
    view->window()->setMask(frameMask_.united(
        QRegion(counter->geometry().translated(hole.topLeft()), QRegion::Ellipse)));
}

TNClipView *TNRecordScreenWindowController::makeCounterWindow()
{
    // A whole screen has no overlay of its own: one stands for the countdown alone, showing
    // nothing but the counter and letting the pointer through.
    makeWindow(false);
    recordScreenView_->showClipViewWithFrame(
        startingRegionForScreen(QRectF(QPointF(), screen_.frame.size())), nullptr);
    recordScreenView_->setHaveSetClearColor(true);
    window_->setMask(QRegion(0, 0, 1, 1));
    window_->setAttribute(Qt::WA_TransparentForMouseEvents);
    makeKeyAndOrderFront();
    if (window_->windowHandle())
        window_->windowHandle()->setFlag(Qt::WindowTransparentForInput, true);
    return recordScreenView_;
}

void TNRecordScreenWindowController::counterDownFinished(CircleCounterView *counter)
{
    counter->setDelegate(nullptr);
    counter->hide();
    if (wholeScreen())
        counter->window()->hide(); // it stood for the countdown only
    else if (recordScreenView_)
        recordScreenView_->window()->setMask(frameMask_);
    if (counterHost_) {
        counterHost_->deleteLater();
        counterHost_ = nullptr;
    }
    startRecording();
}

void TNRecordScreenWindowController::startRecording()
{
    TNRecordManager *manager = delegate_;
    if (!manager)
        return;
    status_ = OverlayStatusRecording;
    host_.setOutputPath(host_.createoutputPath(true));
    EncodeManager &encoder = manager->encodeManager();
    encoder.setFps(host_.fps());
    encoder.setVideoBitrate(kInitialVideoBitrate);
    encoder.setImageSize(selectedRegion_.size());
    encoder.setVideoBitrate(videoBitrateForFramItemIndex(host_.framItemIndex()));
    manager->setCaptureRect(selectedRegion_);
    manager->startRecording();
    host_.showRecordingControls();
    // A whole-screen recording shows no frame: its overlay goes (and with it this object's
    // place in the collection; it is kept alive until the next arming).
    if (manager->recordVideoType() == VideoTypeFullScreen && manager->screen())
        manager->removeRecordWindowController(*manager->screen());
}
