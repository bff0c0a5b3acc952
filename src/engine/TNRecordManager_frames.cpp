// The frame path: every capture output arrives here, is told apart by its source and
// the session state, composed, stamped with a wall-clock time of our own making and
// handed to the main thread, which pushes it to the encoder in the order of arrival.
#include "TNRecordManager.h"

#include "Clock.h"
#include "Log.h"

#include <QMetaObject>
#include <cstring>
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
    const QImage flipped = source->constImage().mirrored(true, false);
    QImage target = mirrored->image();
    for (int row = 0; row < flipped.height(); ++row)
        std::memcpy(target.scanLine(row), flipped.constScanLine(row), size_t(flipped.width()) * 4);
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

bool TNRecordManager::isLive()
{
    return statusPassesFrames(status_) && encodeManager().isWorking();
}

void TNRecordManager::captureOutput(CaptureOutput output, const PixelBufferRef &frame)
{
    if (output == CaptureOutput::Screen && isLive() && recordVideoType() != VideoTypeAudioOnly) {
        screenRule(frame);
        return;
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
    if (!isLive() || recordAudioType() == AudioTypeNone) {
        // Idle or paused: the meter keeps moving.
        audioVolum(sampleBuffer);
        return;
    }
    QDLog::showMessage(QString::asprintf("%s %d 采集音频数据", __func__, __LINE__));
    audioVolum(sampleBuffer);
    QDLog::showMessage(QString::asprintf("%s %d 开始编码音频数据", __func__, __LINE__));
    encodeManager().encoderPushAudio(sampleBuffer);
    reportDuration();
}

double TNRecordManager::frameTimestamp()
{
    std::lock_guard lock(fileTimesMutex_);
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

void TNRecordManager::pushFrameOnMainQueue(const PixelBufferRef &buffer, double seconds)
{
    // The closure owns the buffer until the push has copied it.
    QMetaObject::invokeMethod(
        this, [this, buffer, seconds] { pushFrame(buffer, seconds); }, Qt::QueuedConnection);
}

void TNRecordManager::screenRule(const PixelBufferRef &frame)
{
    // Now is read before composing, so the work does not delay the frame's time.
    const double seconds = frameTimestamp();
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
        pushFrameOnMainQueue(buffer, seconds);
    reportDuration();
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
    const QImage image = imageFromPixelBuffer(mirrored);
    QMetaObject::invokeMethod(
        this,
        [this, image, mirrored] {
            if (recordVideoType() != VideoTypeCamera) {
                host_.showCameraImage(image, false);
                return;
            }
            host_.showCameraImage(image, true);
            if (!statusPassesFrames(status_))
                return;
            pushFrame(mirrored, frameTimestamp());
            reportDuration();
        },
        Qt::QueuedConnection);
}
