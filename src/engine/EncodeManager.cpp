#include "EncodeManager.h"

#include "Log.h"
#include "RecordTypes.h"
#include "SettingsKeys.h"
#include "UserDefaults.h"

#include <QThread>
#include <cstdlib>
#include <cstring>

using capstan::NSLog;

namespace {

void logIfFailed(int result, const char *what)
{
    if (result < 0)
        NSLog(lcEngine, "错误码:%d ->描述：%s", result, what);
}

} // namespace

EncodeManager::EncodeManager(UserDefaults &defaults, std::function<quint64()> recordVideoType)
    : defaults_(defaults), recordVideoType_(std::move(recordVideoType))
{
    initHandle();
}

void EncodeManager::initHandle()
{
    std::lock_guard lock(handleMutex_);
    handle_ = apiEncoderCreate();
}

EncoderHandle EncodeManager::handle() const
{
    std::lock_guard lock(handleMutex_);
    return handle_;
}

void EncodeManager::setOutputPath(const QString &outputPath)
{
    outputPath_ = outputPath;
    logIfFailed(apiEncoderSetOutputPath(handle(), outputPath.toUtf8().constData()), "设置输出路径");
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
    const qint64 splitType = defaults_.integerForKey(Keys::SplitType);
    int32_t timeLimit = 0;
    int32_t sizeLimit = 0;
    if (splitType == 2)
        sizeLimit = throughFloat(splitSize_);
    else if (splitType == 1)
        timeLimit = throughFloat(splitTime_);
    // Both limits go out at every start, zeros too, so no earlier limit survives.
    const EncoderHandle h = handle();
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
    std::lock_guard lock(handleMutex_);
    const int result = apiEncoderEncode(handle_);
    if (result < 0) {
        NSLog(lcEngine, "错误码:%d ->描述：开始编码失败", result);
        return;
    }
    nTotalAudiosize_ = 0;
    isWorking_ = true;
    NSLog(lcEngine, "====开始编码");
}

void EncodeManager::encoderPushVideo(VIDEO_PACKET *packet, double pts)
{
    std::lock_guard lock(handleMutex_);
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
        std::lock_guard lock(handleMutex_);
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
    std::lock_guard lock(handleMutex_);
    return double(apiEncoderGetFileSize(handle_));
}

double EncodeManager::countRecordedDuration()
{
    int64_t encoded = 0;
    {
        std::lock_guard lock(handleMutex_);
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

void EncodeManager::stopEncoderVideo()
{
    logIfFailed(apiEncodePushVideoTrailer(handle()), "标识视频数据送入结束");
}

void EncodeManager::stopEncoderAudio()
{
    logIfFailed(apiEncodePushAudioTrailer(handle()), "标识音频数据送入结束");
}

void EncodeManager::stopEncoderEncode()
{
    EncoderHandle h = nullptr;
    {
        // Clearing isWorking under the lock waits out a push in flight on another thread.
        std::lock_guard lock(handleMutex_);
        if (!isWorking_) {
            NSLog(lcEngine, "没有编码");
            return;
        }
        isWorking_ = false;
        h = handle_;
    }
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    while (apiEncodeIsDone(h) != 1)
        QThread::usleep(1000);
    std::lock_guard lock(handleMutex_);
    logIfFailed(apiEncoderClose(h), "关闭编码器");
    NSLog(lcEngine, "关闭编码器");
    handle_ = nullptr;
}
