#include "AudioStream.h"

#include "EncoderLog.h"

extern "C" {
#include <libavutil/channel_layout.h>
}

#include <algorithm>
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
    settings_ = settings;
    const AVCodec *codec = avcodec_find_encoder_by_name(encoderName(settings.codec));
    if (!codec) {
        logLine("the %s encoder is not available", encoderName(settings.codec));
        return false;
    }
    context_.reset(avcodec_alloc_context3(codec));
    AVCodecContext *c = context_.get();
    c->sample_fmt = codec->sample_fmts ? codec->sample_fmts[0] : AV_SAMPLE_FMT_S16;
    c->sample_rate = settings.rate;
    av_channel_layout_default(&c->ch_layout, settings.channels);
    c->bit_rate = settings.codec == AudioCodec::PCM ? 0 : settings.bitrate;
    c->time_base = AVRational{1, settings.rate};
    if (settings.globalHeader)
        c->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int result = avcodec_open2(c, codec, nullptr);
    if (result < 0) {
        logLine("cannot open the %s encoder: %s", encoderName(settings.codec),
                errorText(result).c_str());
        context_.reset();
        return false;
    }
    frameSize_ = c->frame_size > 0 ? c->frame_size : 1024;

    AVChannelLayout sourceLayout;
    av_channel_layout_default(&sourceLayout, settings.sourceChannels);
    SwrContext *swr = nullptr;
    result = swr_alloc_set_opts2(&swr, &c->ch_layout, c->sample_fmt, c->sample_rate, &sourceLayout,
                                 AV_SAMPLE_FMT_S32, settings.sourceRate, 0, nullptr);
    av_channel_layout_uninit(&sourceLayout);
    resampler_.reset(swr);
    if (result < 0 || swr_init(swr) < 0) {
        logLine("cannot convert %d channels at %d Hz", settings.sourceChannels,
                settings.sourceRate);
        return false;
    }
    fifo_.reset(av_audio_fifo_alloc(c->sample_fmt, settings.channels, frameSize_ * 4));
    return fifo_ != nullptr;
}

int AudioStream::push(const uint8_t *samples, int bytes, const PacketSink &sink)
{
    const int count = bytes / frameBytes();
    if (count <= 0)
        return 0;
    sourceSamples_ += count;
    const int room = swr_get_out_samples(resampler_.get(), count);
    uint8_t **converted = nullptr;
    if (av_samples_alloc_array_and_samples(&converted, nullptr, settings_.channels, room,
                                           context_->sample_fmt, 0) < 0)
        return AVERROR(ENOMEM);
    const uint8_t *input[] = {samples};
    const int made = swr_convert(resampler_.get(), converted, room, input, count);
    int result = made;
    if (made > 0)
        result = av_audio_fifo_write(fifo_.get(), reinterpret_cast<void **>(converted), made);
    av_freep(&converted[0]);
    av_freep(&converted);
    if (result < 0)
        return result;
    return encodeFrames(false, sink);
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
    const int room = swr_get_out_samples(resampler_.get(), 0);
    if (room > 0) {
        uint8_t **converted = nullptr;
        if (av_samples_alloc_array_and_samples(&converted, nullptr, settings_.channels, room,
                                               context_->sample_fmt, 0) >= 0) {
            const int made = swr_convert(resampler_.get(), converted, room, nullptr, 0);
            if (made > 0)
                av_audio_fifo_write(fifo_.get(), reinterpret_cast<void **>(converted), made);
            av_freep(&converted[0]);
            av_freep(&converted);
        }
    }
    const int result = encodeFrames(true, sink);
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
        frame->nb_samples = variable ? take : frameSize_;
        frame->format = context_->sample_fmt;
        frame->sample_rate = context_->sample_rate;
        av_channel_layout_copy(&frame->ch_layout, &context_->ch_layout);
        if (av_frame_get_buffer(frame.get(), 0) < 0)
            return AVERROR(ENOMEM);
        av_samples_set_silence(frame->data, 0, frame->nb_samples, settings_.channels,
                               context_->sample_fmt);
        av_audio_fifo_read(fifo_.get(), reinterpret_cast<void **>(frame->data), take);
        frame->pts = nextPts_;
        nextPts_ += take;
        const int result = send(frame.get(), sink);
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
