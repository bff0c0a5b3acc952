#include "EncoderSession.h"

#include "ArrivalClock.h"
#include "EncoderLog.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace mediaencoder {

namespace {

constexpr int kFailure = -1;

int evenAtLeastTwo(int value)
{
    return std::max(2, value & ~1);
}

} // namespace

EncoderSession::~EncoderSession()
{
    finish();
}

#define REQUIRE_CONFIGURING(name)                                                                  \
    std::lock_guard lock(mutex_);                                                                  \
    if (state_ != State::Configuring) {                                                            \
        logLine("%s: the recording has started already", name);                                    \
        return kFailure;                                                                           \
    }

int EncoderSession::setOutputPath(const char *path)
{
    REQUIRE_CONFIGURING("apiEncoderSetOutputPath");
    if (!path || !*path) {
        logLine("apiEncoderSetOutputPath: no path");
        return kFailure;
    }
    if (!containerForPath(path)) {
        logLine("apiEncoderSetOutputPath: no container for the extension of %s", path);
        return kFailure;
    }
    path_ = path;
    return 0;
}

int EncoderSession::setImageSize(int32_t width, int32_t height)
{
    REQUIRE_CONFIGURING("apiEncoderSetImageSize");
    if (width <= 0 || height <= 0) {
        logLine("apiEncoderSetImageSize: %d x %d is no picture size", width, height);
        return kFailure;
    }
    width_ = width;
    height_ = height;
    return 0;
}

int EncoderSession::setImageFormat(int32_t format)
{
    REQUIRE_CONFIGURING("apiEncoderSetImageFormat");
    // Only the recorder's default image format exists.
    if (format != MEDIAENCODER_IMAGE_FORMAT_DEFAULT) {
        logLine("apiEncoderSetImageFormat: unknown format %d", format);
        return kFailure;
    }
    return 0;
}

int EncoderSession::setOutputSize(int32_t width, int32_t height)
{
    REQUIRE_CONFIGURING("apiEncoderSetOutputSize");
    if (width <= 0 || height <= 0) {
        logLine("apiEncoderSetOutputSize: %d x %d is no picture size", width, height);
        return kFailure;
    }
    outputWidth_ = width;
    outputHeight_ = height;
    return 0;
}

int EncoderSession::setFps(double fps)
{
    REQUIRE_CONFIGURING("apiEncoderSetFps");
    if (!(fps > 0 && fps <= 240)) {
        logLine("apiEncoderSetFps: %g is no frame rate", fps);
        return kFailure;
    }
    fps_ = fps;
    return 0;
}

int EncoderSession::setVideoBitrate(double kbps)
{
    REQUIRE_CONFIGURING("apiEncoderSetVideoBitrate");
    if (!(kbps > 0)) {
        logLine("apiEncoderSetVideoBitrate: %g is no bit rate", kbps);
        return kFailure;
    }
    videoKbps_ = kbps;
    return 0;
}

int EncoderSession::setAudioSrcContext(int32_t channels, int32_t sampleRate, int32_t format)
{
    REQUIRE_CONFIGURING("apiEncoderSetAudioSrcContext");
    if (channels <= 0 || channels > 8 || sampleRate < 8000 || sampleRate > 192000 ||
        format != MEDIAENCODER_AUDIO_FORMAT_S32) {
        logLine("apiEncoderSetAudioSrcContext: %d channels at %d Hz in format %d are not taken",
                channels, sampleRate, format);
        return kFailure;
    }
    sourceChannels_ = channels;
    sourceRate_ = sampleRate;
    return 0;
}

int EncoderSession::setAudioBitrate(double tensOfBits)
{
    REQUIRE_CONFIGURING("apiEncoderSetAudioBitrate");
    if (!(tensOfBits > 0)) {
        logLine("apiEncoderSetAudioBitrate: %g is no bit rate", tensOfBits);
        return kFailure;
    }
    audioBitrate_ = int64_t(tensOfBits * 10);
    return 0;
}

int EncoderSession::setAudioEncodeContext(int32_t channels, int32_t sampleRate)
{
    REQUIRE_CONFIGURING("apiEncoderSetAudioEncodeContext");
    if (channels <= 0 || channels > 2 || sampleRate < 8000 || sampleRate > 96000) {
        logLine("apiEncoderSetAudioEncodeContext: %d channels at %d Hz are not taken", channels,
                sampleRate);
        return kFailure;
    }
    channels_ = channels;
    rate_ = sampleRate;
    return 0;
}

int EncoderSession::setLimitTime(int32_t seconds)
{
    REQUIRE_CONFIGURING("apiEncoderSetLimitTime");
    if (seconds < 0) {
        logLine("apiEncoderSetLimitTime: %d is no time", seconds);
        return kFailure;
    }
    limitSeconds_ = seconds;
    return 1;
}

int EncoderSession::setLimitSize(int32_t megabytes)
{
    REQUIRE_CONFIGURING("apiEncoderSetLimitSize");
    if (megabytes < 0) {
        logLine("apiEncoderSetLimitSize: %d is no size", megabytes);
        return kFailure;
    }
    limitMegabytes_ = megabytes;
    return 1;
}

#undef REQUIRE_CONFIGURING

int EncoderSession::encode()
{
    std::lock_guard lock(mutex_);
    if (state_ != State::Configuring) {
        logLine("apiEncoderEncode: the recording has started already");
        return kFailure;
    }
    const std::optional<ContainerChoice> choice = containerForPath(path_);
    if (!choice) {
        logLine("apiEncoderEncode: no output path with a known extension");
        return kFailure;
    }
    choice_ = *choice;
    const AVOutputFormat *format = av_guess_format(choice_.muxer.c_str(), nullptr, nullptr);
    const bool globalHeader = format && (format->flags & AVFMT_GLOBALHEADER);

    const bool wantsVideo = choice_.video != VideoCodec::None && width_ > 0 && height_ > 0;
    const bool wantsAudio = sourceChannels_ > 0;
    if (!wantsVideo && !wantsAudio) {
        logLine("apiEncoderEncode: nothing to record into %s (no picture size, no sound)",
                path_.c_str());
        return kFailure;
    }
    if (!pendingVideo_) {
        logLine("apiEncoderEncode: no memory for the recording to %s", path_.c_str());
        return kFailure;
    }
    if (wantsVideo) {
        VideoSettings settings;
        settings.width = evenAtLeastTwo(outputWidth_ > 0 ? outputWidth_ : width_);
        settings.height = evenAtLeastTwo(outputHeight_ > 0 ? outputHeight_ : height_);
        settings.fps = fps_;
        settings.bitrateKbps = videoKbps_;
        settings.constantRate = choice_.constantRate;
        settings.globalHeader = globalHeader;
        if (const char *preset = std::getenv("MEDIAENCODER_X264_PRESET"); preset && *preset)
            settings.preset = preset;
        if (!video_.open(settings))
            return kFailure;
    }
    if (wantsAudio) {
        AudioSettings settings;
        settings.sourceChannels = sourceChannels_;
        settings.sourceRate = sourceRate_;
        settings.channels = channels_ > 0 ? channels_ : std::min(sourceChannels_, 2);
        settings.rate = rate_ > 0 ? rate_ : sourceRate_;
        settings.bitrate = audioBitrate_;
        settings.codec = choice_.audio;
        settings.globalHeader = globalHeader;
        if (!audio_.open(settings))
            return kFailure;
        soundClock_.emplace(settings.sourceRate);
    }
    if (!file_.open(splitFileName(path_, 1), choice_, video_.context(), audio_.context()))
        return kFailure;
    try {
        worker_ = std::thread([this] { run(); });
    } catch (const std::system_error &error) {
        logLine("apiEncoderEncode: no thread for the recording to %s: %s", path_.c_str(),
                error.what());
        file_.close();
        return kFailure;
    }
    state_ = State::Running;
    return 0;
}

int EncoderSession::pushVideo(const VIDEO_PACKET *packet, int64_t ms)
{
    // Before the conversion, which takes longer for the first picture.
    const double arrival = arrivalSeconds();
    int width = 0, height = 0;
    AVBufferPool *pool = nullptr; // lives as long as the session
    {
        std::lock_guard lock(mutex_);
        if (state_ != State::Running || videoEnded_ || !hasVideo()) {
            logLine("apiEncoderPushVideo: no picture is being recorded");
            return kFailure;
        }
        width = video_.context()->width;
        height = video_.context()->height;
        pool = video_.picturePool();
    }
    if (!packet) {
        logLine("apiEncoderPushVideo: no packet");
        return kFailure;
    }
    // Converted here, on the caller's thread: the copy is smaller and the caller's buffer
    // is free again when the push returns.
    FramePtr frame = VideoStream::convert(*packet, width, height, pool);
    if (!frame) {
        logLine("apiEncoderPushVideo: the packet holds no BGRA picture");
        return kFailure;
    }
    Item item{Item::Kind::Video, std::move(frame), ms, {}, arrival};
    return enqueue(std::move(item));
}

int EncoderSession::pushAudio(const AudioFrame *frame)
{
    if (!frame || !frame->buffer || frame->size <= 0) {
        logLine("apiEncoderPushAudio: no samples");
        return kFailure;
    }
    {
        std::lock_guard lock(mutex_);
        if (state_ != State::Running || audioEnded_ || !hasAudio()) {
            logLine("apiEncoderPushAudio: no sound is being recorded");
            return kFailure;
        }
    }
    // The server has just handed the buffer over: its arrival, less a latency that stays
    // the same, is the wall time of its end.
    const double arrival = arrivalSeconds();
    Item item{Item::Kind::Audio, nullptr, 0, {}, arrival};
    item.samples.assign(frame->buffer, frame->buffer + frame->size);
    return enqueue(std::move(item));
}

int EncoderSession::enqueue(Item item)
{
    std::unique_lock lock(mutex_);
    // The worker may have stopped on a failure since the caller looked.
    if (state_ != State::Running)
        return kFailure;
    if (item.kind == Item::Kind::Video) {
        // Strictly increasing times: a frame at or before the last one is left out.
        const int64_t ticks = video_.ticksFor(item.ms);
        if (ticks <= lastPushedTicks_)
            return 0;
        const bool room =
            queueChanged_.wait_for(lock, std::chrono::milliseconds(kPushWaitMs), [this] {
                return queuedFrames_ < kMaxQueuedFrames || state_ != State::Running;
            });
        if (state_ != State::Running)
            return kFailure;
        if (!room) {
            if (droppedFrames_.fetch_add(1) % 30 == 0)
                logLine("the encoder falls behind: %lld frames dropped so far",
                        static_cast<long long>(droppedFrames_.load()));
            return kFailure;
        }
    }
    const bool isVideo = item.kind == Item::Kind::Video;
    const int64_t ms = item.ms;
    queue_.push_back(std::move(item));
    if (isVideo) {
        lastPushedTicks_ = video_.ticksFor(ms);
        ++queuedFrames_;
    }
    queueChanged_.notify_all();
    return 0;
}

int EncoderSession::pushVideoTrailer()
{
    std::lock_guard lock(mutex_);
    if (state_ == State::Configuring) {
        logLine("apiEncodePushVideoTrailer: the recording has not started");
        return kFailure;
    }
    if (!videoEnded_ && state_ == State::Running) {
        videoEnded_ = true;
        queue_.push_back(Item{Item::Kind::VideoEnd, nullptr, 0, {}});
        queueChanged_.notify_all();
    }
    return 0;
}

int EncoderSession::pushAudioTrailer()
{
    std::lock_guard lock(mutex_);
    if (state_ == State::Configuring) {
        logLine("apiEncodePushAudioTrailer: the recording has not started");
        return kFailure;
    }
    if (!audioEnded_ && state_ == State::Running) {
        audioEnded_ = true;
        queue_.push_back(Item{Item::Kind::AudioEnd, nullptr, 0, {}});
        queueChanged_.notify_all();
    }
    return 0;
}

int EncoderSession::isDone() const
{
    std::lock_guard lock(mutex_);
    // A recording that never started, or failed, has nothing left to write either.
    return state_ == State::Running ? (done_ ? 1 : 0) : 1;
}

int64_t EncoderSession::encodedTimestamp() const
{
    return encodedMs_.load();
}

int64_t EncoderSession::fileSize() const
{
    return bytesWritten_.load();
}

void EncoderSession::finish()
{
    {
        std::lock_guard lock(mutex_);
        if (state_ == State::Configuring)
            return;
    }
    pushVideoTrailer();
    pushAudioTrailer();
    if (worker_.joinable())
        worker_.join();
}

void EncoderSession::run()
{
    bool videoEnd = !hasVideo();
    bool audioEnd = !hasAudio();
    while (!(videoEnd && audioEnd)) {
        Item item;
        {
            std::unique_lock lock(mutex_);
            queueChanged_.wait(lock, [this] { return !queue_.empty(); });
            item = std::move(queue_.front());
            queue_.pop_front();
            if (item.kind == Item::Kind::Video)
                --queuedFrames_;
            queueChanged_.notify_all();
        }
        if (item.kind == Item::Kind::VideoEnd) {
            videoEnd = true;
            continue;
        }
        if (item.kind == Item::Kind::AudioEnd) {
            audioEnd = true;
            continue;
        }
        if (handle(item) < 0) {
            std::lock_guard lock(mutex_);
            logLine("the recording to %s stops: writing failed", path_.c_str());
            state_ = State::Failed;
            queue_.clear();
            queuedFrames_ = 0;
            queueChanged_.notify_all();
            file_.close();
            return;
        }
    }
    const int result = finishStreams();
    const bool closed = file_.close();
    std::error_code error;
    const auto size = std::filesystem::file_size(file_.path(), error);
    bytesWritten_ = closedFilesBytes_ + (error ? 0 : int64_t(size));
    std::lock_guard lock(mutex_);
    if (result < 0 || !closed) {
        logLine("the recording to %s did not finish cleanly", path_.c_str());
        state_ = State::Failed;
    }
    done_ = true;
}

int EncoderSession::handle(Item &item)
{
    if (item.kind == Item::Kind::Video) {
        const int64_t ticks = video_.ticksFor(item.ms);
        if (fileStartMs_ == INT64_MIN)
            fileStartMs_ = item.ms;
        if (firstVideoMs_ == INT64_MIN)
            firstVideoMs_ = item.ms;
        lastVideoMs_ = item.ms;
        // The frame that reaches a limit is forced to a key frame and starts the next file.
        const bool timeReached =
            limitSeconds_ > 0 && item.ms - fileStartMs_ >= int64_t(limitSeconds_) * 1000;
        const bool key = !splitPending_ && (timeReached || sizeReached_);
        if (key) {
            splitPending_ = true;
            sizeReached_ = false;
            splitTicks_ = ticks;
            fileStartMs_ = item.ms;
        }
        if (!soundPlaced_)
            soundStart_.notePicture(item.arrival, item.ms);
        const int result = video_.encode(item.frame.get(), ticks, key,
                                         [this](AVPacket *p) { return writeVideoPacket(p); });
        return result < 0 ? result : placeSound(false);
    }
    if (!soundPlaced_ && hasVideo()) {
        soundStart_.noteSound(item.arrival, audio_.secondsOf(int(item.samples.size())));
        heldSound_.push_back(std::move(item));
        return placeSound(false);
    }
    return takeSound(std::move(item));
}

int EncoderSession::takeSound(Item item)
{
    const int64_t ms = audio_.msOf(int(item.samples.size()));
    if (laggingSound_.empty() && soundLagMs(ms) <= kMaxSoundLagMs)
        return encodeSound(item);
    // Lagging: either a gap (the device went away for a while) or sound held up on its way
    // (a busy machine), which the next buffers bring in a burst. Only what is still missing
    // once the arrivals have gone on for a while is a gap.
    laggingSound_.push_back(std::move(item));
    laggingMs_ += ms;
    if (laggingSound_.back().arrival - laggingSound_.front().arrival < kConfirmLagSeconds &&
        laggingMs_ < kMaxLaggingMs)
        return 0;
    return pushLaggingSound();
}

int EncoderSession::pushLaggingSound()
{
    if (laggingSound_.empty())
        return 0;
    int result = 0;
    if (const std::optional<double> missing = missingSeconds()) {
        // Live: the arrivals tell what the device did not deliver, to a few milliseconds.
        if (*missing >= kMinGapSeconds) {
            logLine("the sound lags the picture by %.0f ms; silence fills the gap",
                    *missing * 1000);
            result = audio_.pushSilence(std::llround(*missing * 1000),
                                        [this](AVPacket *p) { return writeAudioPacket(p); });
        }
    } else {
        result = catchUpSound(laggingMs_);
    }
    for (; result >= 0 && !laggingSound_.empty(); laggingSound_.pop_front())
        result = encodeSound(laggingSound_.front());
    laggingSound_.clear();
    laggingMs_ = 0;
    return result;
}

std::optional<double> EncoderSession::missingSeconds() const
{
    if (!soundStartLive_ || recentLeads_.empty())
        return std::nullopt;
    // A buffer's lead: its arrival less all the sound through its end. It stays the same
    // from buffer to buffer but for jitter (only ever late) and jumps by what is missing.
    double before = recentLeads_.front().second;
    for (const auto &[arrival, lead] : recentLeads_)
        before = std::min(before, lead);
    double through = soundThroughSeconds_;
    double after = std::numeric_limits<double>::infinity();
    for (const Item &item : laggingSound_) {
        through += audio_.secondsOf(int(item.samples.size()));
        after = std::min(after, item.arrival - through);
    }
    return after - before;
}

int EncoderSession::encodeSound(const Item &item)
{
    soundThroughSeconds_ += audio_.secondsOf(int(item.samples.size()));
    recentLeads_.emplace_back(item.arrival, item.arrival - soundThroughSeconds_);
    while (recentLeads_.front().first < item.arrival - kRecentLeadSeconds)
        recentLeads_.pop_front();
    followSoundClock(item);
    return audio_.push(item.samples.data(), int(item.samples.size()),
                       [this](AVPacket *p) { return writeAudioPacket(p); });
}

int EncoderSession::placeSound(bool now)
{
    if (soundPlaced_ || heldSound_.empty() || !(now || soundStart_.ready()))
        return 0;
    soundPlaced_ = true;
    const std::optional<double> offset = soundStart_.offset();
    // Without a real-time offset the sound starts with the first picture, as it comes.
    soundOriginMs_ = offset || firstVideoMs_ == INT64_MIN ? 0 : firstVideoMs_;
    soundStartLive_ = offset.has_value();
    int result = 0;
    if (offset) {
        logLine("the sound begins %+.0f ms from the pictures' start", *offset * 1000);
        if (*offset > 0)
            result = audio_.pushSilence(std::llround(*offset * 1000),
                                        [this](AVPacket *p) { return writeAudioPacket(p); });
        else
            dropHeldSound(audio_.bytesOf(-*offset));
    }
    int64_t heldMs = 0;
    for (const Item &item : heldSound_)
        heldMs += audio_.msOf(int(item.samples.size()));
    if (result >= 0)
        result = catchUpSound(heldMs);
    for (; result >= 0 && !heldSound_.empty(); heldSound_.pop_front())
        result = encodeSound(heldSound_.front());
    heldSound_.clear();
    return result;
}

void EncoderSession::dropHeldSound(int64_t bytes)
{
    while (bytes > 0 && !heldSound_.empty()) {
        std::vector<uint8_t> &samples = heldSound_.front().samples;
        const auto cut = size_t(std::min<int64_t>(bytes, int64_t(samples.size())));
        samples.erase(samples.begin(), samples.begin() + std::ptrdiff_t(cut));
        bytes -= int64_t(cut);
        if (samples.empty())
            heldSound_.pop_front();
    }
}

void EncoderSession::followSoundClock(const Item &item)
{
    const int64_t frames = audio_.framesOf(int(item.samples.size()));
    soundClock_->arrive(item.arrival, frames);
    const double ppm = soundClock_->correctionFor(frames);
    audio_.setCorrection(clockCorrectionEnabled() ? ppm : 0);
}

void EncoderSession::logSoundClock()
{
    if (!soundClock_)
        return;
    if (const std::optional<double> drift = soundClock_->driftPpm())
        logLine("sound clock %+.0f ppm against the wall clock%s", *drift,
                clockCorrectionEnabled() ? ", corrected by resampling" : ", left uncorrected");
}

int64_t EncoderSession::soundLagMs(int64_t arrivingMs) const
{
    if (!hasVideo() || firstVideoMs_ == INT64_MIN)
        return 0;
    // The sound's first sample is at soundOriginMs_ of the pictures' time. Sound arrives
    // once it has been heard, so the arriving buffer began that much earlier.
    return (lastVideoMs_ - soundOriginMs_) - audio_.pushedMs() - arrivingMs;
}

int EncoderSession::catchUpSound(int64_t arrivingMs)
{
    const int64_t lag = soundLagMs(arrivingMs);
    if (lag <= kMaxSoundLagMs)
        return 0;
    logLine("the sound lags the picture by %lld ms; silence fills the gap",
            static_cast<long long>(lag));
    return audio_.pushSilence(lag, [this](AVPacket *p) { return writeAudioPacket(p); });
}

int EncoderSession::finishStreams()
{
    int result = 0;
    if (hasVideo()) {
        result =
            video_.encode(nullptr, 0, false, [this](AVPacket *p) { return writeVideoPacket(p); });
        // The last picture lasts one frame interval.
        if (result >= 0 && pendingVideo_->data) {
            pendingVideo_->duration = std::max<int64_t>(1, video_.ticksFor(int64_t(1000 / fps_)));
            result = writePendingVideo();
        }
    }
    if (hasAudio() && result >= 0)
        result = placeSound(true);
    if (hasAudio() && result >= 0)
        result = pushLaggingSound();
    if (hasAudio())
        logSoundClock();
    if (hasAudio() && result >= 0)
        result = catchUpSound(0);
    if (hasAudio() && result >= 0)
        result = audio_.flush([this](AVPacket *p) { return writeAudioPacket(p); });
    return result;
}

int EncoderSession::writeVideoPacket(AVPacket *packet)
{
    // Each picture lasts until the next one: the packet waits for its successor so the
    // file knows its duration (fragments would otherwise guess it).
    if (pendingVideo_->data) {
        pendingVideo_->duration = packet->pts - pendingVideo_->pts;
        const int result = writePendingVideo();
        if (result < 0)
            return result;
    }
    if (splitPending_ && (packet->flags & AV_PKT_FLAG_KEY) && packet->pts >= splitTicks_) {
        if (!startNextFile())
            return kFailure;
    }
    const int result = av_packet_ref(pendingVideo_.get(), packet);
    if (result < 0)
        logLine("cannot keep a picture for %s: %s", file_.path().c_str(),
                errorText(result).c_str());
    return result;
}

int EncoderSession::writePendingVideo()
{
    const AVRational timeBase = video_.context()->time_base;
    const int64_t endMs =
        av_rescale_q(pendingVideo_->pts + pendingVideo_->duration, timeBase, {1, 1000});
    const int result = file_.writeVideo(pendingVideo_.get());
    av_packet_unref(pendingVideo_.get());
    if (result < 0)
        return result;
    encodedMs_ = std::max(encodedMs_.load(), endMs);
    noteBytes();
    return 0;
}

int EncoderSession::writeAudioPacket(AVPacket *packet)
{
    // Without a picture, the sound packet after a limit starts the next file.
    if (!hasVideo() && (splitPending_ || sizeReached_)) {
        if (!startNextFile())
            return kFailure;
    }
    const int64_t ticksInFile = file_.audioTicksInFile(packet);
    const int result = file_.writeAudio(packet);
    if (result < 0)
        return result;
    noteBytes();
    if (!hasVideo()) {
        const int rate = audio_.context()->sample_rate;
        encodedMs_ = audio_.samplesEncoded() * 1000 / rate;
        if (limitSeconds_ > 0 && ticksInFile + packet->duration >= int64_t(limitSeconds_) * rate)
            splitPending_ = true;
    }
    return 0;
}

void EncoderSession::noteBytes()
{
    const int64_t inFile = file_.bytes();
    bytesWritten_ = closedFilesBytes_ + inFile;
    if (limitMegabytes_ > 0 && inFile >= int64_t(limitMegabytes_) * 1024 * 1024 && !splitPending_)
        sizeReached_ = true;
}

bool EncoderSession::startNextFile()
{
    file_.close();
    std::error_code error;
    const auto size = std::filesystem::file_size(file_.path(), error);
    closedFilesBytes_ += error ? 0 : int64_t(size);
    ++fileIndex_;
    splitPending_ = false;
    sizeReached_ = false;
    return file_.open(splitFileName(path_, fileIndex_), choice_, video_.context(),
                      audio_.context());
}

} // namespace mediaencoder
