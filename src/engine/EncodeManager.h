#pragma once
// The facade over the encoder library: holds the settings, applies them to the
// library in a fixed order, interleaves stereo sound, derives the running duration
// and logs every failed call. One library handle serves one recording.
//
// Threads: settings and video pushes on the main thread; audio pushes on the audio
// queue; filesize() and countRecordedDuration() from any thread. A lock keeps the
// handle alive while a push or a query on another thread uses it.
#include "AudioSampleBuffer.h"
#include "MediaEncoder.h"

#include <QSizeF>
#include <QString>
#include <atomic>
#include <functional>
#include <mutex>

class UserDefaults;

class EncodeManager {
public:
    // recordVideoType answers the session's current video type (4 is sound alone).
    EncodeManager(UserDefaults &defaults, std::function<quint64()> recordVideoType);
    EncodeManager(const EncodeManager &) = delete;
    EncodeManager &operator=(const EncodeManager &) = delete;

    // A new library handle; an earlier one is dropped without a close, as it was never started.
    void initHandle();
    void setOutputPath(const QString &outputPath);
    void setUpVideoSettings();
    void setUpAudioSettings();
    void setSplit();
    void startEncoderEncode();
    void encoderPushVideo(VIDEO_PACKET *packet, double pts);
    void encoderPushAudio(const AudioSampleBuffer &sampleBuffer);
    double filesize();
    double countRecordedDuration();
    void stopEncoderVideo();
    void stopEncoderAudio();
    // Blocks until the library has written everything, then closes the handle.
    void stopEncoderEncode();

    bool isWorking() const { return isWorking_.load(); }
    qint32 splitTime() const { return splitTime_; }
    void setSplitTime(qint32 seconds) { splitTime_ = seconds; }
    qint32 splitSize() const { return splitSize_; }
    void setSplitSize(qint32 megabytes) { splitSize_ = megabytes; }
    float fps() const { return fps_.load(); }
    void setFps(float fps) { fps_ = fps; }
    qint32 audioBitrate() const { return audioBitrate_.load(); }
    void setAudioBitrate(qint32 bitrate) { audioBitrate_ = bitrate; }
    qint32 audioChannels() const { return audioChannels_.load(); }
    void setAudioChannels(qint32 channels) { audioChannels_ = channels; }
    qint32 audioSamples() const { return audioSamples_.load(); }
    void setAudioSamples(qint32 rate) { audioSamples_ = rate; }
    qint32 nTotalAudiosize() const { return nTotalAudiosize_.load(); }
    EncoderHandle handle() const;
    const QString &outputPath() const { return outputPath_; }
    qint64 videoBitrate() const { return videoBitrate_.load(); }
    void setVideoBitrate(qint64 bitrate) { videoBitrate_ = bitrate; }
    // Camera frames set the size on their own thread while idle.
    QSizeF imageSize() const;
    void setImageSize(const QSizeF &size);

private:
    UserDefaults &defaults_;
    std::function<quint64()> recordVideoType_;

    std::atomic<bool> isWorking_{false};
    qint32 splitTime_ = 0;
    qint32 splitSize_ = 0;
    std::atomic<float> fps_{0};
    std::atomic<qint32> audioBitrate_{12800};
    std::atomic<qint32> audioChannels_{2};
    std::atomic<qint32> audioSamples_{44100};
    std::atomic<qint32> nTotalAudiosize_{0};
    mutable std::mutex handleMutex_; // guards handle_ and the start/stop transitions
    EncoderHandle handle_ = nullptr;
    QString outputPath_;
    std::atomic<qint64> videoBitrate_{0};
    mutable std::mutex imageSizeMutex_;
    QSizeF imageSize_;
};
