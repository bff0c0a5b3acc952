#pragma once
// The facade over the encoder library: holds the settings, applies them to the
// library in a fixed order, interleaves stereo sound, derives the running duration
// and logs every failed call.
//
// One library handle serves one recording: initHandle makes it at the start, the stop
// (or a failed start) closes it. Without a handle, settings are only kept, to be applied
// at the next start, and the queries answer 0 without asking the library.
//
// Threads: the settings, initHandle, the start and the stop on the main thread (the start
// opens the codecs on a thread of its own; initHandle and the stop wait for it); picture
// pushes on the capture threads, sound pushes on the audio thread; filesize() and
// countRecordedDuration() from any thread. Pushes share the handle (a shared lock), so
// sound never waits for a picture; only making and closing the handle take it alone.
#include "AudioSampleBuffer.h"
#include "MediaEncoder.h"

#include <QSizeF>
#include <QString>
#include <atomic>
#include <chrono>
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <thread>

class EncodeManager {
public:
    // splitType answers the split rule when a recording starts (1 time, 2 size); the
    // recordVideoType the session's current video type (4 is sound alone).
    EncodeManager(std::function<qint64()> splitType, std::function<quint64()> recordVideoType);
    EncodeManager(const EncodeManager &) = delete;
    EncodeManager &operator=(const EncodeManager &) = delete;
    ~EncodeManager();

    // A new library handle for the next recording; one left from a start that never
    // happened is closed first.
    void initHandle();
    void setOutputPath(const QString &outputPath);
    void setUpVideoSettings();
    void setUpAudioSettings();
    void setSplit();
    // Returns at once; the library starts beside the caller, isWorking() once it has.
    void startEncoderEncode();
    // Waits for a start still opening the codecs (its result is then in isWorking()).
    void waitUntilStarted();
    void encoderPushVideo(VIDEO_PACKET *packet, double pts);
    void encoderPushAudio(const AudioSampleBuffer &sampleBuffer);
    double filesize();
    double countRecordedDuration();
    // Waits until the library has written everything, at most stopTimeout(), then
    // closes the handle. A library that does not finish in time is left to close on a
    // thread of its own: the file is fragmented and readable up to where it got.
    void stopEncoderEncode();
    std::chrono::milliseconds stopTimeout() const { return stopTimeout_; }
    void setStopTimeout(std::chrono::milliseconds timeout) { stopTimeout_ = timeout; }

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
    std::function<qint64()> splitType_;
    std::function<quint64()> recordVideoType_;

    void encodeNow();
    std::thread starter_; // the main thread's only

    std::atomic<bool> isWorking_{false};
    qint32 splitTime_ = 0;
    qint32 splitSize_ = 0;
    std::atomic<float> fps_{0};
    std::atomic<qint32> audioBitrate_{12800};
    std::atomic<qint32> audioChannels_{2};
    std::atomic<qint32> audioSamples_{44100};
    std::atomic<qint32> nTotalAudiosize_{0};
    // Shared by pushes and queries for as long as they use the handle; taken alone to
    // make, start and close it.
    mutable std::shared_mutex handleMutex_;
    std::atomic<EncoderHandle> handle_{nullptr};
    std::chrono::milliseconds stopTimeout_{10000};
    QString outputPath_;
    std::atomic<qint64> videoBitrate_{0};
    mutable std::mutex imageSizeMutex_;
    QSizeF imageSize_;
};
