// The capture inputs as the session switches them, and their session events.
#include "TNRecordManager.h"

#include "CaptureInputs.h"
#include "Log.h"

#include <cmath>

using capstan::NSLog;

void TNRecordManager::captrueScreenInputEnable(bool enable)
{
    ScreenCaptureInput &input = *platform_.screenInput;
    if (!enable) {
        if (input.isRunning())
            input.stopRunning();
        return;
    }
    // A new screen session starts with a fresh clock and no pending click effect.
    cursorEffectWidth_ = 0;
    isCursorClick_ = false;
    if (input.isRunning())
        input.stopRunning();
    startDate_ = 0;

    for (const ScreenInfo &info : platform_.screens->screens())
        NSLog(lcEngine, "%lld", static_cast<long long>(info.number));
    const qint64 number = screen_ ? screen_->number : screenNumber_;
    NSLog(lcEngine, "%lld", static_cast<long long>(number));
    input.setDisplay(number);

    // The capture runs at the whole frame rate (23.976 captures at 23); the encoder is
    // told the exact value.
    const int wholeFps = int(std::trunc(host_.fps()));
    input.setMinFrameDuration(wholeFps > 0 ? 1.0 / wholeFps : 0.0);

    QRectF rect = captureRect();
    if (rect != QRectF()) {
        // Each enable shrinks the selection by 2 points both ways, on purpose.
        rect.setWidth(rect.width() - 2.0);
        rect.setHeight(rect.height() - 2.0);
        {
            std::lock_guard lock(captureRectMutex_);
            captureRect_ = rect;
        }
        input.setCropRect(rect);
    } else {
        input.setCropRect(QRectF());
    }

    input.setSampleCallback(
        [this](const PixelBufferRef &frame) { captureOutput(CaptureOutput::Screen, frame); });
    input.setSessionEventCallback([this](CaptureSessionEvent event, const QString &error) {
        postSessionEvent(event, error);
    });
    input.startRunning();
}

void TNRecordManager::captrueVideoInputEnable(bool enable)
{
    CameraCaptureInput &input = *platform_.cameraInput;
    if (!enable) {
        QDLOG_HERE();
        if (input.isRunning())
            input.stopRunning();
        return;
    }
    QDLOG_HERE();
    if (input.isRunning())
        input.stopRunning();
    const QStringList devices = input.devices();
    if (devices.isEmpty())
        return;
    if (selectedVideoDevice().isEmpty() || !devices.contains(selectedVideoDevice()))
        setSelectedVideoDevice(devices.first());
    input.setDevice(selectedVideoDevice());
    input.setSampleCallback(
        [this](const PixelBufferRef &frame) { captureOutput(CaptureOutput::Video, frame); });
    input.setSessionEventCallback([this](CaptureSessionEvent event, const QString &error) {
        postSessionEvent(event, error);
    });
    QDLOG_HERE();
    input.startRunning();
}

QString TNRecordManager::selectedVideoDevice() const
{
    std::lock_guard lock(captureRectMutex_);
    return selectedVideoDevice_;
}

void TNRecordManager::setSelectedVideoDevice(const QString &name)
{
    std::lock_guard lock(captureRectMutex_);
    selectedVideoDevice_ = name;
}
