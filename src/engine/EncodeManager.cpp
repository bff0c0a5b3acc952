#include "EncodeManager.h"

#include "Log.h"
#include "RecordTypes.h"

#include <QThread>
#include <cstdlib>
#include <cstring>
#include <thread>

using capstan::NSLog;

namespace {

void logIfFailed(int result, const char *what)
{
    if (result < 0)
        NSLog(lcEngine, "错误码:%d ->描述：%s", result, what);
}

} // namespace

EncodeManager::EncodeManager(std::function<qint64()> splitType,
                             std::function<quint64()> recordVideoType)
    : splitType_(std::move(splitType)), recordVideoType_(std::move(recordVideoType))
{}

EncodeManager::~EncodeManager()
{
    waitUntilStarted();
}

void EncodeManager::initHandle()
{
    waitUntilStarted();
    if (isWorking_)
        stopEncoderEncode();
    std::unique_lock lock(handleMutex_);
    // A handle that was made but never started holds no file: closing it only frees it.
    if (EncoderHandle unused = handle_.exchange(nullptr))
        apiEncoderClose(unused);
    handle_ = apiEncoderCreate();
}

EncoderHandle EncodeManager::handle() const
{
    return handle_.load();
}

void EncodeManager::setOutputPath(const QString &outputPath)
{
    outputPath_ = outputPath;
    if (const EncoderHandle h = handle())
        logIfFailed(apiEncoderSetOutputPath(h, outputPath.toUtf8().constData()), "设置输出路径");
}

QSizeF EncodeManager::imageSize() const
{
    std::lock_guard lock(imageSizeMutex_);
    return imageSize_;
}

void EncodeManager::setImageSize(const QSizeF &size)
{
    std::lock_guard lock(imageSizeMutex_);
    imageSize_ = size;
}

void EncodeManager::setUpVideoSettings()
{
    const EncoderHandle h = handle();
    // Kept for the next start: without a handle there is no recording, and a running one
    // keeps the format it started with (the library would refuse the change).
    if (!h || isWorking_)
        return;
    const QSizeF size = imageSize();
    const auto width = static_cast<int32_t>(size.width());
    const auto height = static_cast<int32_t>(size.height());
    logIfFailed(apiEncoderSetImageSize(h, width, height), "设置初始数据源帧大小");
    logIfFailed(apiEncoderSetImageFormat(h, MEDIAENCODER_IMAGE_FORMAT_DEFAULT), "设置输出格式");
    // The same size for the output: frames are never scaled by the library here.
    logIfFailed(apiEncoderSetOutputSize(h, width, height), "设置输出文件帧大小");
    logIfFailed(apiEncoderSetFps(h, double(fps_.load())), "设置视频帧率");
    logIfFailed(apiEncoderSetVideoBitrate(h, double(videoBitrate_.load())), "设置视频码率");
}

void EncodeManager::setUpAudioSettings()
{
    const EncoderHandle h = handle();
    if (!h || isWorking_)
        return; // kept for the next start, as above
    logIfFailed(apiEncoderSetAudioSrcContext(h, audioChannels_, audioSamples_,
                                             MEDIAENCODER_AUDIO_FORMAT_S32),
                "设置音频源数据格式");
    logIfFailed(apiEncoderSetAudioBitrate(h, double(audioBitrate_.load())), "设置音频码率");
    logIfFailed(apiEncoderSetAudioEncodeContext(h, audioChannels_, audioSamples_),
                "设置音频输出声道和采样率");
}

// Limits pass through a float on their way, as they always have: values above 2^24
// lose their low bits.
static int32_t throughFloat(qint32 value)
{
    return static_cast<int32_t>(static_cast<float>(value));
}

void EncodeManager::setSplit()
{
    const qint64 splitType = splitType_ ? splitType_() : 0;
    int32_t timeLimit = 0;
    int32_t sizeLimit = 0;
    if (splitType == 2)
        sizeLimit = throughFloat(splitSize_);
    else if (splitType == 1)
        timeLimit = throughFloat(splitTime_);
    // Both limits go out at every start, zeros too, so no earlier limit survives.
    const EncoderHandle h = handle();
    if (!h)
        return;
    if (apiEncoderSetLimitTime(h, timeLimit) == 1)
        NSLog(lcEngine, "设置时间分段，%s:line:%d time:%d", __func__, __LINE__, splitTime_);
    else
        NSLog(lcEngine, "设置时间分段失败，%s:line:%d", __func__, __LINE__);
    if (apiEncoderSetLimitSize(h, sizeLimit) == 1)
        NSLog(lcEngine, "设置大小分段，%s:line:%d time:%d", __func__, __LINE__, splitSize_);
    else
        NSLog(lcEngine, "设置大小分段失败，%s:line:%d", __func__, __LINE__);
}

void EncodeManager::startEncoderEncode()
{
    setSplit();
    waitUntilStarted();
    // Opening the codecs takes tens of milliseconds at 1080p (x264 builds its tables and
    // threads): it runs beside the caller, so the interface never waits for it. Pushes are
    // refused until it is done (isWorking_ is still false), as they were while it ran here.
    try {
        starter_ = std::thread([this] { encodeNow(); });
    } catch (const std::system_error &) {
        encodeNow();
    }
}

void EncodeManager::waitUntilStarted()
{
    if (starter_.joinable())
        starter_.join();
}

void EncodeManager::encodeNow()
{
    const EncoderHandle h = handle_.load();
    // The handle is only closed by initHandle and the stop, which wait for this first.
    const int result = apiEncoderEncode(h);
    if (result < 0) {
        NSLog(lcEngine, "错误码:%d ->描述：开始编码失败", result);
        // Nothing will be written: the handle goes now rather than at a stop that finds
        // nothing to stop.
        std::unique_lock lock(handleMutex_);
        if (EncoderHandle failed = handle_.exchange(nullptr))
            apiEncoderClose(failed);
        return;
    }
    nTotalAudiosize_ = 0;
    isWorking_ = true;
    NSLog(lcEngine, "====开始编码");
}

void EncodeManager::encoderPushVideo(VIDEO_PACKET *packet, double pts)
{
    std::shared_lock lock(handleMutex_);
    if (!isWorking_ || !handle_)
        return;
    logIfFailed(apiEncoderPushVideo(handle_, packet, static_cast<int64_t>(pts)),
                "送入视频数据失败");
}

void EncodeManager::encoderPushAudio(const AudioSampleBuffer &sampleBuffer)
{
    if (!isWorking_ || !handle())
        return;
    const auto length = static_cast<int32_t>(sampleBuffer.data.size());
    auto *frame = static_cast<AudioFrame *>(std::calloc(1, sizeof(AudioFrame)));
    auto *buffRead = static_cast<int32_t *>(std::malloc(size_t(length) + 1));
    if (!frame || !buffRead) {
        NSLog(lcEngine, "buffRead malloc failed");
        std::free(frame);
        std::free(buffRead);
        return;
    }
    frame->size = length;
    frame->buffer = static_cast<uint8_t *>(std::malloc(size_t(length) + 1));
    if (!frame->buffer) {
        NSLog(lcEngine, "audioFrame->buffer  malloc failed");
        std::free(buffRead);
        std::free(frame);
        return;
    }
    std::memcpy(buffRead, sampleBuffer.data.constData(), size_t(length));
    const qint32 channels = audioChannels_;
    if (channels < 2) {
        std::memcpy(frame->buffer, buffRead, size_t(length));
    } else {
        // Planar to interleaved; only stereo is supported, more channels leave the
        // buffer unfilled. An odd sample count drops the last sample.
        const int32_t samples = length / 4;
        const int32_t perChannel = samples / channels;
        if (samples >= channels && channels == 2) {
            auto *out = reinterpret_cast<int32_t *>(frame->buffer);
            for (int32_t i = 0; i < perChannel; ++i) {
                out[2 * i] = buffRead[i];
                out[2 * i + 1] = buffRead[i + perChannel];
            }
        }
    }
    {
        std::shared_lock lock(handleMutex_);
        if (isWorking_ && handle_)
            logIfFailed(apiEncoderPushAudio(handle_, frame), "送入音频数据失败");
    }
    // Counted also after a failed push; the 32-bit counter wraps after 2 GiB.
    nTotalAudiosize_.fetch_add(length);
    std::free(buffRead);
    std::free(frame->buffer);
    std::free(frame);
}

double EncodeManager::filesize()
{
    std::shared_lock lock(handleMutex_);
    return handle_ ? double(apiEncoderGetFileSize(handle_)) : 0.0;
}

double EncodeManager::countRecordedDuration()
{
    int64_t encoded = 0;
    {
        std::shared_lock lock(handleMutex_);
        if (handle_)
            encoded = apiEncoderGetEncodedTimestamp(handle_);
    }
    if (recordVideoType_ && recordVideoType_() == VideoTypeAudioOnly) {
        // Sound alone: whole seconds from the bytes pushed, always as if 4-byte stereo.
        const qint32 rate = audioSamples_;
        if (rate == 0)
            return 0;
        const qint32 seconds = (nTotalAudiosize_.load() / 8) / rate;
        return double(static_cast<int32_t>(static_cast<int64_t>(seconds) * 1000));
    }
    return double(encoded);
}

void EncodeManager::stopEncoderEncode()
{
    // A stop right after the start waits for the codecs to open: what they write is kept.
    waitUntilStarted();
    EncoderHandle h = nullptr;
    {
        // Taking the handle alone waits out the pushes in flight; later ones see
        // isWorking false.
        std::unique_lock lock(handleMutex_);
        if (!isWorking_) {
            NSLog(lcEngine, "没有编码");
            return;
        }
        isWorking_ = false;
        h = handle_;
    }
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    const auto deadline = std::chrono::steady_clock::now() + stopTimeout_;
    int done = 0;
    while ((done = apiEncodeIsDone(h)) == 0 && std::chrono::steady_clock::now() < deadline)
        QThread::usleep(1000);

    std::unique_lock lock(handleMutex_); // no query may use the handle as it closes
    handle_ = nullptr;
    if (done != 1) {
        // A library that failed or hangs must not hold the interface: what it wrote is
        // readable, and the close waits for its worker on a thread of its own.
        NSLog(lcEngine,
              "the encoder did not finish (%d) within %lld ms; closing it in the background", done,
              static_cast<long long>(stopTimeout_.count()));
        std::thread([h] { apiEncoderClose(h); }).detach();
        return;
    }
    logIfFailed(apiEncoderClose(h), "关闭编码器");
    NSLog(lcEngine, "关闭编码器");
}
