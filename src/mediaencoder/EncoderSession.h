#pragma once
// One recording: its settings, the queue of pictures and sound waiting to be encoded,
// the worker thread that encodes and writes them, and the files they go to.
//
// Threads: every operation may be called from any thread. Settings and the state sit
// behind one lock; pushes convert (pictures) or copy (sound) on the caller's thread and
// queue the result; the worker encodes and writes. The figures the caller reads while
// the worker runs are atomics.
//
// Queue policy: pictures in the queue are bounded (kMaxQueuedFrames). A push that finds
// the queue full waits up to kPushWaitMs for room, then drops the frame and counts it,
// so memory stays bounded whatever the input rate. Sound is never dropped: a second of
// it is smaller than one picture.
//
// Sound is timed by its sample count, pictures by their timestamps. Sound that starts
// late (a route just built) or stops for a while (its device went away) would run early
// from then on; so sound that lags the pictures by more than kMaxSoundLagMs is caught up
// with silence first. Between gaps, the sound device's clock may run a little fast or slow
// against the wall clock the pictures are timed by: SoundClock measures that from the
// arrival of the sound and the resampler corrects it.
#include "AudioStream.h"
#include "ContainerChoice.h"
#include "MediaEncoder.h"
#include "OutputFile.h"
#include "SoundClock.h"
#include "VideoStream.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace mediaencoder {

class EncoderSession {
public:
    static constexpr size_t kMaxQueuedFrames = 16;
    static constexpr int kPushWaitMs = 200;
    static constexpr int64_t kMaxSoundLagMs = 200;

    EncoderSession() = default;
    EncoderSession(const EncoderSession &) = delete;
    EncoderSession &operator=(const EncoderSession &) = delete;
    ~EncoderSession();

    int setOutputPath(const char *path);
    int setImageSize(int32_t width, int32_t height);
    int setImageFormat(int32_t format);
    int setOutputSize(int32_t width, int32_t height);
    int setFps(double fps);
    int setVideoBitrate(double kbps);
    int setAudioSrcContext(int32_t channels, int32_t sampleRate, int32_t format);
    int setAudioBitrate(double tensOfBits);
    int setAudioEncodeContext(int32_t channels, int32_t sampleRate);
    int setLimitTime(int32_t seconds);
    int setLimitSize(int32_t megabytes);

    int encode();
    int pushVideo(const VIDEO_PACKET *packet, int64_t ms);
    int pushAudio(const AudioFrame *frame);
    int64_t encodedTimestamp() const;
    int64_t fileSize() const;
    int pushVideoTrailer();
    int pushAudioTrailer();
    int isDone() const;
    // Finishes what was pushed, then stops the worker.
    void finish();

    int64_t droppedFrames() const { return droppedFrames_.load(); }

private:
    enum class State { Configuring, Running, Done, Failed };
    struct Item {
        enum class Kind { Video, Audio, VideoEnd, AudioEnd } kind;
        FramePtr frame;
        int64_t ms = 0;
        std::vector<uint8_t> samples;
        double arrival = 0; // sound: steady-clock seconds at the push
    };

    bool hasVideo() const { return video_.context() != nullptr; }
    bool hasAudio() const { return audio_.context() != nullptr; }
    int enqueue(Item item);
    void run();
    int handle(Item &item);
    int writeVideoPacket(AVPacket *packet);
    int writeAudioPacket(AVPacket *packet);
    int writePendingVideo();
    // Ends the current file at this packet and opens the next one.
    bool startNextFile();
    // Counts the bytes and notes a size limit reached.
    void noteBytes();
    int finishStreams();
    // Silence up to the pictures' time, when the sound (with arrivingMs more of it on the
    // way) lags them too far.
    int catchUpSound(int64_t arrivingMs);
    // Notes the sound's arrival and sets the correction for it.
    void followSoundClock(const Item &item);
    void logSoundClock();

    mutable std::mutex mutex_; // settings, state, queue
    std::condition_variable queueChanged_;
    State state_ = State::Configuring;
    std::string path_;
    int width_ = 0, height_ = 0;
    int outputWidth_ = 0, outputHeight_ = 0;
    double fps_ = 30;
    double videoKbps_ = 5000;
    int sourceChannels_ = 0, sourceRate_ = 0;
    int channels_ = 0, rate_ = 0;
    int64_t audioBitrate_ = 128000;
    int32_t limitSeconds_ = 0;
    int32_t limitMegabytes_ = 0;
    std::deque<Item> queue_;
    size_t queuedFrames_ = 0;
    bool videoEnded_ = false, audioEnded_ = false;
    int64_t lastPushedTicks_ = INT64_MIN;
    std::thread worker_;

    // The worker's own; read by others only through the atomics below.
    ContainerChoice choice_;
    VideoStream video_;
    AudioStream audio_;
    std::optional<SoundClock> soundClock_;
    OutputFile file_;
    int fileIndex_ = 1;
    PacketPtr pendingVideo_ = makePacket();
    bool splitPending_ = false; // the next key frame (or sound packet) starts a file
    bool sizeReached_ = false;
    int64_t splitTicks_ = 0;
    int64_t fileStartMs_ = INT64_MIN;
    int64_t firstVideoMs_ = INT64_MIN;
    int64_t lastVideoMs_ = INT64_MIN;
    int64_t closedFilesBytes_ = 0;

    std::atomic<int64_t> encodedMs_{0};
    std::atomic<int64_t> bytesWritten_{0};
    std::atomic<int64_t> droppedFrames_{0};
    std::atomic<bool> done_{false};
};

} // namespace mediaencoder
