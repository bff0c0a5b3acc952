#include "VideoStream.h"

#include "EncoderLog.h"

extern "C" {
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
}

#include <cmath>
#include <libyuv.h>
#include <vector>

namespace mediaencoder {

namespace {

constexpr int kPlaneAlign = 32;

int pictureBytes(int width, int height)
{
    return av_image_get_buffer_size(AV_PIX_FMT_YUV420P, width, height, kPlaneAlign);
}

// The frame's planes in one buffer of the pool (which holds pictures of this size).
int takeFromPool(AVFrame *frame, AVBufferPool *pool)
{
    frame->buf[0] = av_buffer_pool_get(pool);
    if (!frame->buf[0])
        return AVERROR(ENOMEM);
    const int result = av_image_fill_arrays(frame->data, frame->linesize, frame->buf[0]->data,
                                            AVPixelFormat(frame->format), frame->width,
                                            frame->height, kPlaneAlign);
    return result < 0 ? result : 0;
}

} // namespace

FramePtr VideoStream::convert(const VIDEO_PACKET &packet, int width, int height, AVBufferPool *pool)
{
    if (packet.format != MEDIAENCODER_PIXEL_FORMAT_BGRA || !packet.data || packet.width <= 0 ||
        packet.height <= 0 || int64_t(packet.bytesPerRow) < int64_t(packet.width) * 4 ||
        int64_t(packet.bytesPerRow) * packet.height > int64_t(packet.dataSize))
        return nullptr;
    FramePtr frame = makeFrame();
    if (!frame) {
        logLine("no memory for a picture");
        return nullptr;
    }
    frame->format = AV_PIX_FMT_YUV420P;
    frame->width = width;
    frame->height = height;
    if (const int result =
            pool ? takeFromPool(frame.get(), pool) : av_frame_get_buffer(frame.get(), 0);
        result < 0) {
        logLine("no memory for a picture of %d x %d: %s", width, height, errorText(result).c_str());
        return nullptr;
    }

    const uint8_t *pixels = packet.data;
    int stride = packet.bytesPerRow;
    std::vector<uint8_t> scaled;
    if (packet.width != width || packet.height != height) {
        scaled.resize(size_t(width) * height * 4);
        if (libyuv::ARGBScale(pixels, stride, packet.width, packet.height, scaled.data(), width * 4,
                              width, height, libyuv::kFilterBilinear) != 0)
            return nullptr;
        pixels = scaled.data();
        stride = width * 4;
    }
    // libyuv's ARGB is B, G, R, A in memory: the BGRA of the packets.
    if (libyuv::ARGBToI420(pixels, stride, frame->data[0], frame->linesize[0], frame->data[1],
                           frame->linesize[1], frame->data[2], frame->linesize[2], width,
                           height) != 0)
        return nullptr;
    return frame;
}

bool VideoStream::open(const VideoSettings &settings)
{
    context_.reset();
    const AVCodec *codec = avcodec_find_encoder_by_name("libx264");
    if (!codec) {
        logLine("libx264 is not available");
        return false;
    }
    if (!packet_) {
        logLine("no memory for the H.264 encoder's packets");
        return false;
    }
    CodecContextPtr context(avcodec_alloc_context3(codec));
    if (!context) {
        logLine("no memory for the H.264 encoder");
        return false;
    }
    AVCodecContext *c = context.get();
    c->width = settings.width;
    c->height = settings.height;
    c->pix_fmt = AV_PIX_FMT_YUV420P;
    const AVRational rate = av_d2q(settings.fps > 0 ? settings.fps : 30, 1001000);
    c->framerate = rate;
    // Milliseconds keep the capture's own timing; AVI has no room for that.
    c->time_base = settings.constantRate ? av_inv_q(rate) : AVRational{1, 1000};
    // A key frame every two seconds bounds how far a split waits.
    c->gop_size = std::max(1, int(std::lround(av_q2d(rate) * 2)));
    c->max_b_frames = 0;
    c->thread_count = 0;
    const int64_t bitrate = int64_t(settings.bitrateKbps * 1000);
    if (bitrate > 0) {
        c->rc_max_rate = bitrate;
        c->rc_buffer_size = int(std::min<int64_t>(bitrate * 2, INT32_MAX));
    }
    if (settings.globalHeader)
        c->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    int result = av_opt_set(c->priv_data, "preset", settings.preset.c_str(), 0);
    if (result >= 0)
        result = av_opt_set(c->priv_data, "crf", "23", 0);
    // A forced key frame starts a file after a split: it must be an IDR picture.
    if (result >= 0)
        result = av_opt_set(c->priv_data, "forced-idr", "1", 0);
    if (result >= 0)
        result = avcodec_open2(c, codec, nullptr);
    if (result < 0) {
        logLine("cannot open the H.264 encoder at %d x %d: %s", settings.width, settings.height,
                errorText(result).c_str());
        return false;
    }
    pictures_.reset(av_buffer_pool_init(pictureBytes(settings.width, settings.height), nullptr));
    if (!pictures_) {
        logLine("no memory for the pictures of %d x %d", settings.width, settings.height);
        return false;
    }
    context_ = std::move(context);
    return true;
}

int64_t VideoStream::ticksFor(int64_t ms) const
{
    return std::llround(double(ms) / 1000.0 / av_q2d(context_->time_base));
}

int VideoStream::encode(AVFrame *frame, int64_t ticks, bool keyFrame, const PacketSink &sink)
{
    if (frame) {
        frame->pts = ticks;
        frame->pict_type = keyFrame ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    }
    return encodeFrame(context_.get(), frame, packet_.get(), sink);
}

} // namespace mediaencoder
