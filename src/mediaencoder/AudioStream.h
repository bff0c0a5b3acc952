#pragma once
// The sound side: interleaved 32-bit samples resampled to what the encoder takes,
// cut into the encoder's frame size and encoded; timed by the sample count.
#include "AvPointers.h"
#include "ContainerChoice.h"
#include "VideoStream.h"

namespace mediaencoder {

struct AudioSettings {
    int sourceChannels = 2;
    int sourceRate = 44100;
    int channels = 2;
    int rate = 44100;
    int64_t bitrate = 128000; // bit/s
    AudioCodec codec = AudioCodec::AAC;
    bool globalHeader = false;
};

class AudioStream {
public:
    bool open(const AudioSettings &settings);
    AVCodecContext *context() const { return context_.get(); }
    // Interleaved 32-bit samples of the source format; whole frames are encoded.
    int push(const uint8_t *samples, int bytes, const PacketSink &sink);
    // Silence of the source format, as if the source had delivered it.
    int pushSilence(int64_t ms, const PacketSink &sink);
    // Milliseconds of source sound taken so far, silence included.
    int64_t pushedMs() const { return msOfFrames(sourceSamples_); }
    // Milliseconds of bytes of source sound.
    int64_t msOf(int bytes) const { return msOfFrames(bytes / frameBytes()); }
    // The rest, then the encoder's own delay.
    int flush(const PacketSink &sink);
    // Samples (per channel, at the encoder's rate) handed to the encoder so far.
    int64_t samplesEncoded() const { return nextPts_; }

private:
    int frameBytes() const { return 4 * settings_.sourceChannels; }
    int64_t msOfFrames(int64_t frames) const { return frames * 1000 / settings_.sourceRate; }
    int encodeFrames(bool all, const PacketSink &sink);
    int send(AVFrame *frame, const PacketSink &sink);

    AudioSettings settings_;
    CodecContextPtr context_;
    ResamplerPtr resampler_;
    FifoPtr fifo_;
    PacketPtr packet_ = makePacket();
    int frameSize_ = 1024;
    int64_t nextPts_ = 0;
    int64_t sourceSamples_ = 0; // per channel
};

} // namespace mediaencoder
