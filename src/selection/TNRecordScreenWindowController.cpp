#include "TNRecordScreenWindowController.h"

#include "EncodeManager.h"
#include "Log.h"
#include "Platform.h"
#include "Pointer.h"
#include "RecordTypes.h"
#include "SelectionLog.h"
#include "TNRecordManager.h"

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

void TNRecordScreenWindowController::startRecorderScreen()
{
    const QRectF region = startingRegionForScreen(screen_.frame);
    const std::optional<ScreenInfo> target = targetScreen();
    if (target && *target == screen_) {
        lastWindowRect_ = region;
        selectedScreen_ = screen_;
    }
    TNRecordScreenWindowController *acting = actingController();
    if (delegate_ && delegate_->recordVideoType() == VideoTypeFullScreen) {
        acting->clipViewMouseMoved();
        acting->startNoteButtonClick();
    } else {
        NSLog(lcSelection, "region and window selection are not available yet");
    }
    host_.setRecordWC(this);
}

void TNRecordScreenWindowController::cleanup()
{
    delegate_ = nullptr;
}

void TNRecordScreenWindowController::clipViewMouseMoved()
{
    if (!delegate_ || delegate_->isDisableChangeScreen())
        return;
    if (delegate_->recordVideoType() == VideoTypeFullScreen)
        lastWindowRect_ = startingRegionForScreen(screen_.frame);
    if (const std::optional<ScreenInfo> target = targetScreen()) {
        delegate_->setScreen(*target);
        delegate_->setScreenNumber(target->number);
    }
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
    if (isFullScreenOnSeveral() && host_.screenItemCount() >= 2)
        selectedScreen_ = targetScreen();
    else if (!selectedScreen_)
        selectedScreen_ = targetScreen();
    if (selectedScreen_) {
        delegate_->setScreen(*selectedScreen_);
        delegate_->setScreenNumber(selectedScreen_->number);
    }
    delegate_->setIsDisableChangeScreen(true);
    if (delegate_->screen())
        delegate_->removeFirstOtherScreenController(*delegate_->screen());
    selectedRegion_ = selectedRegionForFrame(lastWindowRect_);
    showCircleDownCounter();
}

void TNRecordScreenWindowController::showCircleDownCounter()
{
    delegate_->setIsDisableChangeScreen(true);
    host_.disableSourceControls();
    if (host_.isShowReverseTime())
        NSLog(lcSelection, "the countdown is not available yet: recording at once");
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
