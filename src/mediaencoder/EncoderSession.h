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
// Sound is timed by its sample count, pictures by their timestamps. The first sound is
// held until SoundStart can tell where on the pictures' time it began. Sound that starts
// late (a route just built) or stops for a while (its device went away) would run early
// from then on; so sound that lags the pictures by more than kMaxSoundLagMs, and still does
// after half a second more of it has arrived, is caught up with silence first. Between gaps, the
// sound device's clock may run a little fast or slow against the wall clock the pictures are timed
// by: SoundClock measures that from the arrival of the sound and the resampler corrects it.
#include "AudioStream.h"
#include "ContainerChoice.h"
#include "MediaEncoder.h"
#include "OutputFile.h"
#include "SoundClock.h"
#include "SoundStart.h"
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
    // Lagging sound is held this long by its arrivals (or this much of it) before what is
    // still missing is taken for a gap.
    static constexpr double kConfirmLagSeconds = 0.5;
    static constexpr int64_t kMaxLaggingMs = 2000;
    // Live sound: a gap shorter than this is jitter; the lead before a gap is the least of
    // this last stretch of arrivals.
    static constexpr double kMinGapSeconds = 0.02;
    static constexpr double kRecentLeadSeconds = 1.0;

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
        double arrival = 0; // steady-clock seconds at the push
    };

    bool hasVideo() const { return video_.context() != nullptr; }
    bool hasAudio() const { return audio_.context() != nullptr; }
    int enqueue(Item item);
    void run();
    int handle(Item &item);
    // Encodes the sound at once, or holds it while it lags the pictures.
    int takeSound(Item item);
    int pushLaggingSound();
    // What the lagging sound misses, by the arrivals; nothing when they tell no real time.
    std::optional<double> missingSeconds() const;
    int encodeSound(const Item &item);
    // Puts the held sound on the pictures' timeline once enough is known (or now), with
    // silence before it or its start left out.
    int placeSound(bool now);
    void dropHeldSound(int64_t bytes);
    int writeVideoPacket(AVPacket *packet);
    int writeAudioPacket(AVPacket *packet);
    int writePendingVideo();
    // Ends the current file at this packet and opens the next one.
    bool startNextFile();
    // Counts the bytes and notes a size limit reached.
    void noteBytes();
    int finishStreams();
    // How far the sound (with arrivingMs more of it on the way) lags the pictures.
    int64_t soundLagMs(int64_t arrivingMs) const;
    // Silence up to the pictures' time, when the sound lags them too far.
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
    SoundStart soundStart_;
    std::deque<Item> heldSound_; // until the sound's start is placed
    bool soundPlaced_ = false;
    int64_t soundOriginMs_ = 0;     // the pictures' time of the sound's first sample
    std::deque<Item> laggingSound_; // held while it may yet catch up by itself
    int64_t laggingMs_ = 0;
    bool soundStartLive_ = false;                       // the arrivals are those of a live device
    double soundThroughSeconds_ = 0;                    // source sound encoded, silence left out
    std::deque<std::pair<double, double>> recentLeads_; // (arrival, lead), the last second
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
