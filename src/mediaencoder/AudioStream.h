#pragma once
// The sound side: interleaved 32-bit samples resampled to what the encoder takes,
// cut into the encoder's frame size and encoded; timed by the sample count. A correction
// (parts per million more or fewer samples out than in) keeps a device whose clock runs
// off the wall clock on the pictures' time; the resampler spreads it over a second of
// sound at a time, far too little to hear.
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
    // Milliseconds of source sound taken so far, silence included, as the correction
    // stretched or shrank it.
    int64_t pushedMs() const { return int64_t(correctedSamples_ * 1000 / settings_.sourceRate); }
    // For the sound pushed from now on; ppm of output samples against input.
    void setCorrection(double ppm) { correctionPpm_ = ppm; }
    // Samples per channel in bytes of source sound.
    int64_t framesOf(int bytes) const { return bytes / frameBytes(); }
    // Seconds of bytes of source sound, and the bytes of seconds (whole frames).
    double secondsOf(int bytes) const { return double(framesOf(bytes)) / settings_.sourceRate; }
    int64_t bytesOf(double seconds) const
    {
        return int64_t(seconds * settings_.sourceRate) * frameBytes();
    }
    // Milliseconds of bytes of source sound.
    int64_t msOf(int bytes) const { return msOfFrames(bytes / frameBytes()); }
    // The rest, then the encoder's own delay.
    int flush(const PacketSink &sink);
    // Samples (per channel, at the encoder's rate) handed to the encoder so far.
    int64_t samplesEncoded() const { return nextPts_; }

private:
    int frameBytes() const { return 4 * settings_.sourceChannels; }
    int64_t msOfFrames(int64_t frames) const { return frames * 1000 / settings_.sourceRate; }
    // Converts count source samples (null: what the resampler still holds) into the FIFO.
    int resample(const uint8_t *samples, int count);
    int encodeFrames(bool all, const PacketSink &sink);
    int send(AVFrame *frame, const PacketSink &sink);
    // Hands the resampler the correction for the next second of output when the last one
    // is used up.
    int compensate(int count);

    AudioSettings settings_;
    CodecContextPtr context_;
    ResamplerPtr resampler_;
    FifoPtr fifo_;
    PacketPtr packet_ = makePacket();
    int frameSize_ = 1024;
    int64_t nextPts_ = 0;
    int64_t sourceSamples_ = 0; // per channel
    double correctionPpm_ = 0;
    double correctedSamples_ = 0;  // source samples, corrected
    bool compensating_ = false;    // the resampler has been asked for a correction
    int64_t compensationLeft_ = 0; // output samples the last request still covers
    double compensationRest_ = 0;  // the fraction of a sample not asked for yet
};

} // namespace mediaencoder
