#include "OutputFile.h"

#include "EncoderLog.h"

namespace mediaencoder {

OutputFile::~OutputFile()
{
    close();
}

bool OutputFile::open(const std::string &path, const ContainerChoice &choice, AVCodecContext *video,
                      AVCodecContext *audio)
{
    path_ = path;
    int result =
        avformat_alloc_output_context2(&context_, nullptr, choice.muxer.c_str(), path.c_str());
    if (result < 0 || !context_) {
        logLine("no container for %s: %s", path.c_str(), errorText(result).c_str());
        return false;
    }
    const auto addStream = [this](Stream &s, AVCodecContext *codec) {
        s = Stream{};
        if (!codec)
            return true;
        s.stream = avformat_new_stream(context_, nullptr);
        if (!s.stream || avcodec_parameters_from_context(s.stream->codecpar, codec) < 0)
            return false;
        s.stream->time_base = codec->time_base;
        s.codecTimeBase = codec->time_base;
        return true;
    };
    if (!addStream(video_, video) || !addStream(audio_, audio)) {
        logLine("cannot add the streams of %s", path.c_str());
        avformat_free_context(context_);
        context_ = nullptr;
        return false;
    }
    result = avio_open(&context_->pb, path.c_str(), AVIO_FLAG_WRITE);
    if (result < 0) {
        logLine("cannot write %s: %s", path.c_str(), errorText(result).c_str());
        avformat_free_context(context_);
        context_ = nullptr;
        return false;
    }
    AVDictionary *options = nullptr;
    // What is written goes to disk at once, so a crash loses at most the fragment open.
    av_dict_set(&options, "flush_packets", "1", 0);
    if (choice.fragmented) {
        // Fragments every second or key frame: a file cut off by a crash still plays.
        av_dict_set(&options, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
        av_dict_set(&options, "frag_duration", "1000000", 0);
    }
    result = avformat_write_header(context_, &options);
    av_dict_free(&options);
    if (result < 0) {
        logLine("cannot start %s: %s", path.c_str(), errorText(result).c_str());
        avio_closep(&context_->pb);
        avformat_free_context(context_);
        context_ = nullptr;
        return false;
    }
    headerWritten_ = true;
    avio_flush(context_->pb);
    return true;
}

int64_t OutputFile::ticksInFile(const Stream &stream, const AVPacket *packet)
{
    return stream.firstTicks == AV_NOPTS_VALUE ? 0 : packet->pts - stream.firstTicks;
}

int64_t OutputFile::videoTicksInFile(const AVPacket *packet) const
{
    return ticksInFile(video_, packet);
}

int64_t OutputFile::audioTicksInFile(const AVPacket *packet) const
{
    return ticksInFile(audio_, packet);
}

int OutputFile::writeVideo(AVPacket *packet)
{
    return write(video_, packet);
}

int OutputFile::writeAudio(AVPacket *packet)
{
    return write(audio_, packet);
}

int OutputFile::write(Stream &stream, AVPacket *packet)
{
    if (!context_ || !stream.stream)
        return AVERROR(EINVAL);
    if (stream.firstTicks == AV_NOPTS_VALUE)
        stream.firstTicks = packet->pts;
    packet->pts -= stream.firstTicks;
    if (packet->dts != AV_NOPTS_VALUE)
        packet->dts -= stream.firstTicks;
    packet->stream_index = stream.stream->index;
    av_packet_rescale_ts(packet, stream.codecTimeBase, stream.stream->time_base);
    const int result = av_interleaved_write_frame(context_, packet);
    if (result < 0)
        logLine("cannot write to %s: %s", path_.c_str(), errorText(result).c_str());
    return result;
}

bool OutputFile::close()
{
    if (!context_)
        return true;
    bool ok = headerWritten_ && av_write_trailer(context_) >= 0;
    headerWritten_ = false;
    if (context_->pb) {
        avio_flush(context_->pb);
        ok = ok && context_->pb->error >= 0;
        avio_closep(&context_->pb);
    }
    avformat_free_context(context_);
    context_ = nullptr;
    if (!ok)
        logLine("%s was not finished cleanly", path_.c_str());
    return ok;
}

int64_t OutputFile::bytes() const
{
    return context_ && context_->pb ? avio_tell(context_->pb) : 0;
}

} // namespace mediaencoder
