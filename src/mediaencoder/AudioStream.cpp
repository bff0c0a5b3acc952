#include "AudioStream.h"

#include "EncoderLog.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
#include <cmath>
#include <vector>

namespace mediaencoder {

namespace {

const char *encoderName(AudioCodec codec)
{
    switch (codec) {
    case AudioCodec::MP3:
        return "libmp3lame";
    case AudioCodec::PCM:
        return "pcm_s16le";
    case AudioCodec::AAC:
        break;
    }
    return "aac";
}

} // namespace

bool AudioStream::open(const AudioSettings &settings)
{
    context_.reset();
    resampler_.reset();
    fifo_.reset();
    settings_ = settings;
    const AVCodec *codec = avcodec_find_encoder_by_name(encoderName(settings.codec));
    if (!codec) {
        logLine("the %s encoder is not available", encoderName(settings.codec));
        return false;
    }
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (!context || !packet_) {
        logLine("no memory for the %s encoder", encoderName(settings.codec));
        return false;
    }
    AVCodecContext *c = context.get();
    c->sample_fmt = codec->sample_fmts ? codec->sample_fmts[0] : AV_SAMPLE_FMT_S16;
    c->sample_rate = settings.rate;
    av_channel_layout_default(&c->ch_layout, settings.channels);
    c->bit_rate = settings.codec == AudioCodec::PCM ? 0 : settings.bitrate;
    c->time_base = AVRational{1, settings.rate};
    if (settings.globalHeader)
        c->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int result = avcodec_open2(c, codec, nullptr);
    if (result < 0) {
        logLine("cannot open the %s encoder for %d channels at %d Hz: %s",
                encoderName(settings.codec), settings.channels, settings.rate,
                errorText(result).c_str());
        return false;
    }
    frameSize_ = c->frame_size > 0 ? c->frame_size : 1024;

    AVChannelLayout sourceLayout;
    av_channel_layout_default(&sourceLayout, settings.sourceChannels);
    SwrContext *swr = nullptr;
    result = swr_alloc_set_opts2(&swr, &c->ch_layout, c->sample_fmt, c->sample_rate, &sourceLayout,
                                 AV_SAMPLE_FMT_S32, settings.sourceRate, 0, nullptr);
    av_channel_layout_uninit(&sourceLayout);
    ResamplerPtr resampler(swr);
    if (result >= 0 && !resampler)
        result = AVERROR(ENOMEM);
    if (result >= 0)
        result = swr_init(resampler.get());
    if (result < 0) {
        logLine("cannot convert %d channels at %d Hz: %s", settings.sourceChannels,
                settings.sourceRate, errorText(result).c_str());
        return false;
    }
    FifoPtr fifo(av_audio_fifo_alloc(c->sample_fmt, settings.channels, frameSize_ * 4));
    if (!fifo) {
        logLine("no memory for the sound waiting for the %s encoder", encoderName(settings.codec));
        return false;
    }
    context_ = std::move(context);
    resampler_ = std::move(resampler);
    fifo_ = std::move(fifo);
    nextPts_ = 0;
    sourceSamples_ = 0;
    correctionPpm_ = 0;
    correctedSamples_ = 0;
    compensating_ = false;
    compensationLeft_ = 0;
    compensationRest_ = 0;
    return true;
}

int AudioStream::push(const uint8_t *samples, int bytes, const PacketSink &sink)
{
    const int count = bytes / frameBytes();
    if (count <= 0)
        return 0;
    sourceSamples_ += count;
    correctedSamples_ += count * (1 + correctionPpm_ * 1e-6);
    int result = compensate(count);
    if (result >= 0)
        result = resample(samples, count);
    if (result < 0)
        return result;
    return encodeFrames(false, sink);
}

int AudioStream::compensate(int count)
{
    // Until a correction is wanted the resampler stays out of the way (it does not
    // resample at all between equal rates).
    if (!compensating_ && correctionPpm_ == 0)
        return 0;
    if (compensationLeft_ > 0) {
        compensationLeft_ -= int64_t(count) * settings_.rate / settings_.sourceRate;
        return 0;
    }
    // A whole second per request: one sample more or less every few thousand, with the
    // fraction carried over so the long-run rate is exact.
    const int distance = settings_.rate;
    const double wanted = compensationRest_ + correctionPpm_ * 1e-6 * distance;
    const int delta = int(std::lround(wanted));
    const int result = swr_set_compensation(resampler_.get(), delta, distance);
    if (result < 0) {
        logLine("cannot correct the sound's rate: %s", errorText(result).c_str());
        return result;
    }
    compensating_ = true;
    compensationRest_ = wanted - delta;
    compensationLeft_ = distance - int64_t(count) * settings_.rate / settings_.sourceRate;
    return 0;
}

int AudioStream::resample(const uint8_t *samples, int count)
{
    const int room = swr_get_out_samples(resampler_.get(), count);
    if (room <= 0)
        return room;
    SampleArrayPtr converted = makeSampleArray(settings_.channels, room, context_->sample_fmt);
    if (!converted) {
        logLine("no memory for %d samples of sound", room);
        return AVERROR(ENOMEM);
    }
    const uint8_t *input[] = {samples};
    const int made =
        swr_convert(resampler_.get(), converted.get(), room, samples ? input : nullptr, count);
    if (made < 0) {
        logLine("cannot convert the sound: %s", errorText(made).c_str());
        return made;
    }
    if (made == 0)
        return 0;
    // The FIFO grows to take them; a short write would lose sound.
    const int written =
        av_audio_fifo_write(fifo_.get(), reinterpret_cast<void **>(converted.get()), made);
    if (written < made) {
        logLine("no memory for the sound waiting for its encoder");
        return written < 0 ? written : AVERROR(ENOMEM);
    }
    return 0;
}

int AudioStream::pushSilence(int64_t ms, const PacketSink &sink)
{
    int64_t remaining = ms * settings_.sourceRate / 1000;
    // A second at a time, so a long gap does not take a long buffer.
    std::vector<int32_t> zeros(size_t(std::min<int64_t>(remaining, settings_.sourceRate)) *
                               size_t(settings_.sourceChannels));
    while (remaining > 0) {
        const int count = int(std::min<int64_t>(remaining, settings_.sourceRate));
        const int result =
            push(reinterpret_cast<const uint8_t *>(zeros.data()), count * frameBytes(), sink);
        if (result < 0)
            return result;
        remaining -= count;
    }
    return 0;
}

int AudioStream::flush(const PacketSink &sink)
{
    // What the resampler still holds.
    int result = resample(nullptr, 0);
    if (result >= 0)
        result = encodeFrames(true, sink);
    if (result < 0)
        return result;
    return send(nullptr, sink);
}

int AudioStream::encodeFrames(bool all, const PacketSink &sink)
{
    while (av_audio_fifo_size(fifo_.get()) >= frameSize_ ||
           (all && av_audio_fifo_size(fifo_.get()) > 0)) {
        const int available = av_audio_fifo_size(fifo_.get());
        const bool variable = context_->codec->capabilities & AV_CODEC_CAP_VARIABLE_FRAME_SIZE;
        // A last short frame is padded with silence where the encoder wants whole frames.
        const int take = std::min(available, frameSize_);
        FramePtr frame = makeFrame();
        if (!frame)
            return AVERROR(ENOMEM);
        frame->nb_samples = variable ? take : frameSize_;
        frame->format = context_->sample_fmt;
        frame->sample_rate = context_->sample_rate;
        int result = av_channel_layout_copy(&frame->ch_layout, &context_->ch_layout);
        if (result >= 0)
            result = av_frame_get_buffer(frame.get(), 0);
        if (result >= 0)
            result = av_samples_set_silence(frame->data, 0, frame->nb_samples, settings_.channels,
                                            context_->sample_fmt);
        if (result < 0) {
            logLine("no memory for a frame of sound: %s", errorText(result).c_str());
            return result;
        }
        const int read =
            av_audio_fifo_read(fifo_.get(), reinterpret_cast<void **>(frame->data), take);
        if (read != take) {
            logLine("the sound waiting for its encoder could not be read");
            return read < 0 ? read : AVERROR(EIO);
        }
        frame->pts = nextPts_;
        nextPts_ += take;
        result = send(frame.get(), sink);
        if (result < 0)
            return result;
    }
    return 0;
}

int AudioStream::send(AVFrame *frame, const PacketSink &sink)
{
    return encodeFrame(context_.get(), frame, packet_.get(), sink);
}

} // namespace mediaencoder
