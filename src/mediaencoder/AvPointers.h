#pragma once
// Owning pointers for the FFmpeg objects the library keeps.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/audio_fifo.h>
#include <libavutil/buffer.h>
#include <libavutil/frame.h>
#include <libswresample/swresample.h>
}

#include <functional>
#include <memory>

namespace mediaencoder {

struct FrameDeleter {
    void operator()(AVFrame *f) const { av_frame_free(&f); }
};
struct PacketDeleter {
    void operator()(AVPacket *p) const { av_packet_free(&p); }
};
struct CodecContextDeleter {
    void operator()(AVCodecContext *c) const { avcodec_free_context(&c); }
};
struct ResamplerDeleter {
    void operator()(SwrContext *s) const { swr_free(&s); }
};
struct FifoDeleter {
    void operator()(AVAudioFifo *f) const { av_audio_fifo_free(f); }
};
// An output context with its file: the file (if open) is closed, then the context freed.
struct FormatContextDeleter {
    void operator()(AVFormatContext *c) const
    {
        if (c->pb && !(c->oformat->flags & AVFMT_NOFILE))
            avio_closep(&c->pb);
        avformat_free_context(c);
    }
};
// The planes of av_samples_alloc_array_and_samples: one buffer, and the array pointing
// into it.
struct SampleArrayDeleter {
    void operator()(uint8_t **planes) const
    {
        av_freep(&planes[0]);
        av_freep(&planes);
    }
};

// Buffers still out when the pool goes are freed as they come back.
struct BufferPoolDeleter {
    void operator()(AVBufferPool *p) const { av_buffer_pool_uninit(&p); }
};

using FramePtr = std::unique_ptr<AVFrame, FrameDeleter>;
using PacketPtr = std::unique_ptr<AVPacket, PacketDeleter>;
using CodecContextPtr = std::unique_ptr<AVCodecContext, CodecContextDeleter>;
using ResamplerPtr = std::unique_ptr<SwrContext, ResamplerDeleter>;
using FifoPtr = std::unique_ptr<AVAudioFifo, FifoDeleter>;
using FormatContextPtr = std::unique_ptr<AVFormatContext, FormatContextDeleter>;
using SampleArrayPtr = std::unique_ptr<uint8_t *, SampleArrayDeleter>;
using BufferPoolPtr = std::unique_ptr<AVBufferPool, BufferPoolDeleter>;

inline FramePtr makeFrame()
{
    return FramePtr(av_frame_alloc());
}

inline PacketPtr makePacket()
{
    return PacketPtr(av_packet_alloc());
}

// Room for count samples per channel; null when the allocation fails.
inline SampleArrayPtr makeSampleArray(int channels, int count, AVSampleFormat format)
{
    uint8_t **planes = nullptr;
    if (av_samples_alloc_array_and_samples(&planes, nullptr, channels, count, format, 0) < 0)
        return nullptr;
    return SampleArrayPtr(planes);
}

// Receives the encoded packets; negative to stop with that error.
using PacketSink = std::function<int(AVPacket *packet)>;

// Sends a frame (null: end of stream) and hands every packet ready to the sink.
inline int encodeFrame(AVCodecContext *context, const AVFrame *frame, AVPacket *packet,
                       const PacketSink &sink)
{
    int result = avcodec_send_frame(context, frame);
    if (result < 0)
        return result;
    while ((result = avcodec_receive_packet(context, packet)) >= 0) {
        const int written = sink(packet);
        av_packet_unref(packet);
        if (written < 0)
            return written;
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF ? 0 : result;
}

} // namespace mediaencoder
