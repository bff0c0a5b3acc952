#pragma once
// The picture side: BGRA frames turned into YUV 4:2:0 at the output size (libyuv), and
// their H.264 encoder (libx264).
#include "AvPointers.h"
#include "MediaEncoder.h"

#include <string>

namespace mediaencoder {

struct VideoSettings {
    int width = 0; // even
    int height = 0;
    double fps = 30;
    double bitrateKbps = 5000;
    bool constantRate = false; // one tick per frame instead of milliseconds
    bool globalHeader = false;
    std::string preset = "ultrafast";
};

class VideoStream {
public:
    // A YUV 4:2:0 picture of width x height from the packet's BGRA pixels, scaled when
    // the sizes differ, in a buffer of the pool when there is one. Null for a packet that
    // does not describe a BGRA picture.
    static FramePtr convert(const VIDEO_PACKET &packet, int width, int height,
                            AVBufferPool *pool = nullptr);

    bool open(const VideoSettings &settings);
    AVCodecContext *context() const { return context_.get(); }
    // Whole pictures of the output size, for convert on any thread. A picture is made on
    // the capture thread and freed on the worker, a few megabytes each at 1080p: reused,
    // they keep the resident size flat and spare the page faults of fresh memory.
    AVBufferPool *picturePool() const { return pictures_.get(); }
    // The encoder's tick for a time in milliseconds.
    int64_t ticksFor(int64_t ms) const;
    // Encodes a picture at ticks (or flushes, with a null frame); packets go to the sink
    // in the encoder's time base. Negative on failure.
    int encode(AVFrame *frame, int64_t ticks, bool keyFrame, const PacketSink &sink);

private:
    CodecContextPtr context_;
    BufferPoolPtr pictures_;
    PacketPtr packet_ = makePacket();
};

} // namespace mediaencoder
