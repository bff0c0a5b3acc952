// The frame path: every capture output arrives here, is told apart by its source and
// the session state, composed, stamped with a wall-clock time of our own making and
// pushed to the encoder from the capture thread itself, so the interface thread never
// waits for the encoder.
#include "TNRecordManager.h"

#include "Clock.h"
#include "Log.h"

#include <QMetaObject>
#include <numeric>

using capstan::NSLog;

namespace {

constexpr int32_t kCVReturnAllocationFailed = -6662;

} // namespace

PixelBufferRef mirrorPixelBuffer(const PixelBufferRef &source)
{
    if (!source)
        return nullptr;
    PixelBufferRef mirrored = PixelBuffer::create(source->width(), source->height());
    if (!mirrored) {
        NSLog(lcEngine, "CVPixelBufferCreate failed : %d", kCVReturnAllocationFailed);
        return nullptr;
    }
    QImage target = mirrored->image();
    copyPixelRows(source->constImage().mirrored(true, false), target);
    return mirrored;
}

qint64 videoBitrateForFramItemIndex(qint64 framItemIndex)
{
    switch (framItemIndex) {
    case 0:
        return 8000;
    case 1:
        return 5000;
    default:
        return 3000;
    }
}

TNRecordManager::LivePass TNRecordManager::passLive(bool stamp)
{
    EncodeManager &encoder = encodeManager();
    std::lock_guard lock(stretchMutex_);
    if (!statusPassesFrames(status_) || !encoder.isWorking())
        return {};
    ++livePasses_;
    return LivePass(this, stamp ? frameTimestamp() : 0.0);
}

TNRecordManager::LivePass::~LivePass()
{
    if (!manager_)
        return;
    std::lock_guard lock(manager_->stretchMutex_);
    if (--manager_->livePasses_ == 0)
        manager_->livePassesDone_.notify_all();
}

void TNRecordManager::captureOutput(CaptureOutput output, const PixelBufferRef &frame)
{
    if (output == CaptureOutput::Screen && recordVideoType() != VideoTypeAudioOnly) {
        bool pushed = false;
        {
            // Now is read at the gate, before composing, so the work does not delay the time.
            if (const LivePass pass = passLive(true)) {
                screenRule(frame, pass.seconds());
                pushed = true;
            }
        }
        // Reported once the pass is given back: the receiver may stop the recording.
        if (pushed) {
            reportDuration();
            return;
        }
    }
    if (output == CaptureOutput::Video) {
        cameraRule(frame);
        return;
    }
    // An idle or starting screen session arms the clock; the start clears it again.
    if (output == CaptureOutput::Screen && startDate_ == 0)
        startDate_ = platform_.clock->now();
    // What is left meters as a buffer without sound.
    audioVolum(AudioSampleBuffer{});
}

void TNRecordManager::captureOutput(const AudioSampleBuffer &sampleBuffer)
{
    {
        const LivePass pass = recordAudioType() != AudioTypeNone ? passLive(false) : LivePass();
        if (!pass) {
            // Idle or paused: the meter keeps moving.
            audioVolum(sampleBuffer);
            return;
        }
        QDLog::showMessage(QString::asprintf("%s %d 采集音频数据", __func__, __LINE__));
        audioVolum(sampleBuffer);
        QDLog::showMessage(QString::asprintf("%s %d 开始编码音频数据", __func__, __LINE__));
        encodeManager().encoderPushAudio(sampleBuffer);
    }
    reportDuration();
}

double TNRecordManager::frameTimestamp()
{
    if (startDate_ == 0) {
        fileTimes_.clear();
        startDate_ = platform_.clock->now();
    }
    const double base = std::accumulate(fileTimes_.cbegin(), fileTimes_.cend(), 0.0);
    return platform_.clock->now() - startDate_ + base;
}

void TNRecordManager::reportDuration()
{
    TNRecordAudioManagerDelegate *receiver = delegate();
    if (!receiver)
        return;
    receiver->recordScreenTimeDuration(int32_t(encodeManager().countRecordedDuration() / 1000.0));
}

void TNRecordManager::pushFrame(const PixelBufferRef &buffer, double seconds)
{
    VIDEO_PACKET packet{};
    packet.format = MEDIAENCODER_PIXEL_FORMAT_BGRA;
    packet.width = buffer->width();
    packet.height = buffer->height();
    packet.bytesPerRow = buffer->bytesPerRow();
    packet.data = buffer->data();
    packet.dataSize = buffer->dataSize();
    encodeManager().encoderPushVideo(&packet, seconds * 1000.0);
}

void TNRecordManager::screenRule(const PixelBufferRef &frame, double seconds)
{
    // The delivered picture of a window recording only ticks the clock: the followed
    // window is drawn by itself, and may move captureRect as it is.
    const QImage picture = recordVideoType() == VideoTypeAppWindow
                               ? getCapturedImage()
                               : appendMouseCursor(imageFromPixelBuffer(frame));
    const QSizeF size = captureRect().size();
    const PixelBufferRef buffer =
        pixelBufferFromCGImage(picture, size.isEmpty() ? QSizeF(picture.size()) : size);
    // A frame that could not be made is dropped here.
    if (buffer)
        pushFrame(buffer, seconds);
}

void TNRecordManager::cameraRule(const PixelBufferRef &frame)
{
    const PixelBufferRef mirrored = mirrorPixelBuffer(frame);
    if (!mirrored)
        return;
    if (status_ == RecordStatusIdle && recordVideoType() == VideoTypeCamera) {
        // Camera frames seen before the start, and nothing else, configure the recording.
        EncodeManager &encoder = encodeManager();
        encoder.setVideoBitrate(videoBitrateForFramItemIndex(host_.framItemIndex()));
        encoder.setImageSize(QSizeF(mirrored->width(), mirrored->height()));
        encoder.setFps(host_.fps());
    }
    const bool cameraRecording = recordVideoType() == VideoTypeCamera;
    const QImage image = imageFromPixelBuffer(mirrored);
    QMetaObject::invokeMethod(
        this, [this, image, cameraRecording] { host_.showCameraImage(image, cameraRecording); },
        Qt::QueuedConnection);
    // A camera that is on during a screen recording is only shown, never pushed.
    if (!cameraRecording)
        return;
    {
        const LivePass pass = passLive(true);
        if (!pass)
            return;
        pushFrame(mirrored, pass.seconds());
    }
    reportDuration();
}
