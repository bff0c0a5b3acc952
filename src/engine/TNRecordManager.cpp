#include "TNRecordManager.h"

#include "CaptureInputs.h"
#include "Clock.h"
#include "DurationText.h"
#include "Log.h"

#include <QMetaObject>

using capstan::NSLog;

TNRecordManager::TNRecordManager(const Platform &platform, RecordSessionHost &host)
    : platform_(platform), host_(host)
{
    inputDevice_ = EZAudioDevice::currentInputDevice(*platform_.audio);
    outputDevice_ = EZAudioDevice::currentOutputDevice(*platform_.audio);
    // The aggregates exist (or are rebuilt after a crash) from the first moment of a run.
    prepareDevice();
}

namespace {

// The inputs outlive the session (the platform owns them): they must not call into it
// once it is gone. Stopping first means no capture thread is inside a callback.
template <typename Input> void detach(Input *input)
{
    if (!input)
        return;
    input->stopRunning();
    input->setSampleCallback({});
    input->setSessionEventCallback({});
}

} // namespace

TNRecordManager::~TNRecordManager()
{
    detach(platform_.screenInput);
    detach(platform_.cameraInput);
    detach(platform_.audioInput);
}

EncodeManager &TNRecordManager::encodeManager()
{
    // Capture threads may ask first (an idle camera configures it).
    std::call_once(encodeManagerOnce_, [this] {
        encodeManager_ = std::make_unique<EncodeManager>([this] { return host_.splitType(); },
                                                         [this] { return recordVideoType(); });
    });
    return *encodeManager_;
}

void TNRecordManager::startRecording()
{
    isWorking_ = true;
    startDate_ = 0;
    host_.setRecording(true);
    EncodeManager &encoder = encodeManager();
    encoder.initHandle();

    const quint64 videoType = recordVideoType();
    if (videoType == VideoTypeCamera) {
        captrueScreenInputEnable(false);
        captrueVideoInputEnable(true);
    } else {
        // The microphone permission gates the screen input too.
        if (host_.checkCaptureAudio())
            captrueScreenInputEnable(videoType != VideoTypeAudioOnly);
        if (host_.checkCapture(false))
            captrueVideoInputEnable(host_.isCaptrue());
    }

    const QString path = host_.outputPath();
    encoder.setOutputPath(path);
    {
        std::lock_guard lock(windowsMutex_);
        onScreenWindows_ =
            platform_.windows->CGWindowListCreate(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
        desktopElements_ = onScreenWindows_;
    }

    if (videoType != VideoTypeCamera) {
        if (captureRect() == QRectF()) {
            encoder.setImageSize(screen_ ? screen_->frame.size() : QSizeF(0, 0));
        } else {
            if (videoType == VideoTypeAppWindow)
                walkWindowsAtStart();
            const QRectF rect = captureRect();
            encoder.setImageSize(rect.size());
            platform_.screenInput->setCropRect(rect);
        }
    }

    {
        std::lock_guard lock(stretchMutex_);
        startDate_ = 0;
        fileTimes_.clear();
        status_ = RecordStatusRecording;
    }

    if (recordAudioType() != AudioTypeNone)
        encoder.setUpAudioSettings();
    if (videoType != VideoTypeAudioOnly)
        encoder.setUpVideoSettings();
    encoder.setOutputPath(path);
    encoder.startEncoderEncode();
    host_.refreshStateMenuItem();
}

// A frame reads the status and the stretches under the same lock (frameTimestamp), so a
// pause cannot fall between its gate and its time.
void TNRecordManager::pauseRecording()
{
    std::lock_guard lock(stretchMutex_);
    isWorking_ = false;
    fileTimes_.append(platform_.clock->now() - startDate_.load());
    status_ = RecordStatusPaused;
}

void TNRecordManager::resumeRecording()
{
    std::lock_guard lock(stretchMutex_);
    startDate_ = platform_.clock->now();
    isWorking_ = true;
    status_ = RecordStatusResumed;
}

void TNRecordManager::stopRecording()
{
    isWorking_ = false;
    host_.setTimeSetsBtnEnabled(true);
    host_.setRecording(false);
    {
        std::lock_guard lock(windowsMutex_);
        desktopElements_.clear();
        onScreenWindows_.clear();
    }
    {
        // Frames and sound let through before this point are pushed before the encoder
        // stops: none of them may reach the next recording's encoder.
        std::unique_lock lock(stretchMutex_);
        status_ = RecordStatusIdle;
        if (!livePassesDone_.wait_for(lock, std::chrono::seconds(2),
                                      [this] { return livePasses_ == 0; }))
            NSLog(lcEngine, "stopRecording: %d frames still on their way to the encoder",
                  livePasses_);
    }
    encodeManager().stopEncoderEncode();
    // The overlays are windows: the main thread takes them down, at once when it stops.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (RecordOverlayWindow *overlay = host_.recordWC()) {
                overlay->removeRecordScreenView();
                overlay->orderOut();
            }
            // A region's frame may stand on another screen than the last overlay made.
            for (const auto &controller : recordWindowControllerArray_) {
                controller->removeRecordScreenView();
                controller->orderOut();
            }
        },
        Qt::AutoConnection);
    host_.refreshStateMenuItem();
}

void TNRecordManager::stopCapture()
{
    isWorking_ = false;
    QDLOG_HERE();
}

void TNRecordManager::timerDurationTimeOut()
{
    EncodeManager &encoder = encodeManager();
    const auto seconds = static_cast<int32_t>(encoder.countRecordedDuration() / 1000);
    if (seconds < 0) {
        NSLog(lcEngine, "get error record duration= %d", seconds);
        return;
    }
    const QString time = durationText(seconds);
    const double megabytes = encoder.filesize() / 1e6;
    QMetaObject::invokeMethod(
        this,
        [this, time, megabytes] {
            host_.setRecordCurrentTimeLabel(time);
            host_.setRecordFileSizeLabel(QString::asprintf(
                "%.2f MB / %s", megabytes, qUtf8Printable(host_.systemFreeSpace())));
        },
        Qt::QueuedConnection);
}

QList<double> TNRecordManager::fileTimes() const
{
    std::lock_guard lock(stretchMutex_);
    return fileTimes_;
}

QRectF TNRecordManager::captureRect() const
{
    std::lock_guard lock(captureRectMutex_);
    return captureRect_;
}

void TNRecordManager::setCaptureRect(const QRectF &rect)
{
    {
        std::lock_guard lock(captureRectMutex_);
        captureRect_ = rect;
    }
    if (rect.width() > 1440.0)
        QDLOG_HERE();
}

void TNRecordManager::setScreen(const std::optional<ScreenInfo> &screen)
{
    screen_ = screen;
    if (!screen)
        QDLOG_HERE();
}

void TNRecordManager::setScreenNumber(qint64 number)
{
    screenNumber_ = number;
    NSLog(lcEngine, "%s : %zd", __func__, ssize_t(number));
}
