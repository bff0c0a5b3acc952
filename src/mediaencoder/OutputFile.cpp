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
    close();
    path_ = path;
    video_ = Stream{};
    audio_ = Stream{};
    // Kept only once the file has started.
    Stream videoStream;
    Stream audioStream;
    AVFormatContext *allocated = nullptr;
    int result =
        avformat_alloc_output_context2(&allocated, nullptr, choice.muxer.c_str(), path.c_str());
    FormatContextPtr context(allocated);
    if (result < 0 || !context) {
        logLine("no container for %s: %s", path.c_str(), errorText(result).c_str());
        return false;
    }
    const auto addStream = [&context](Stream &s, AVCodecContext *codec) {
        if (!codec)
            return true;
        s.stream = avformat_new_stream(context.get(), nullptr);
        if (!s.stream || avcodec_parameters_from_context(s.stream->codecpar, codec) < 0)
            return false;
        s.stream->time_base = codec->time_base;
        s.codecTimeBase = codec->time_base;
        return true;
    };
    if (!addStream(videoStream, video) || !addStream(audioStream, audio)) {
        logLine("cannot add the streams of %s", path.c_str());
        return false;
    }
    result = avio_open(&context->pb, path.c_str(), AVIO_FLAG_WRITE);
    if (result < 0) {
        logLine("cannot write %s: %s", path.c_str(), errorText(result).c_str());
        return false;
    }
    AVDictionary *options = nullptr;
    // What is written goes to disk at once, so a crash loses at most the fragment open.
    result = av_dict_set(&options, "flush_packets", "1", 0);
    if (result >= 0 && choice.fragmented) {
        // Fragments every second or key frame: a file cut off by a crash still plays.
        result = av_dict_set(&options, "movflags", "frag_keyframe+empty_moov+default_base_moof", 0);
        if (result >= 0)
            result = av_dict_set(&options, "frag_duration", "1000000", 0);
    }
    if (result >= 0)
        result = avformat_write_header(context.get(), &options);
    av_dict_free(&options);
    if (result < 0) {
        logLine("cannot start %s: %s", path.c_str(), errorText(result).c_str());
        return false;
    }
    avio_flush(context->pb);
    if (context->pb->error < 0) {
        logLine("cannot write %s: %s", path.c_str(), errorText(context->pb->error).c_str());
        return false;
    }
    context_ = std::move(context);
    video_ = videoStream;
    audio_ = audioStream;
    headerWritten_ = true;
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
    const int result = av_interleaved_write_frame(context_.get(), packet);
    if (result < 0)
        logLine("cannot write to %s: %s", path_.c_str(), errorText(result).c_str());
    return result;
}

bool OutputFile::close()
{
    if (!context_)
        return true;
    bool ok = headerWritten_ && av_write_trailer(context_.get()) >= 0;
    headerWritten_ = false;
    if (context_->pb) {
        avio_flush(context_->pb);
        ok = ok && context_->pb->error >= 0;
        // Closing flushes what is still buffered: its failure is a lost tail.
        ok = avio_closep(&context_->pb) >= 0 && ok;
    }
    context_.reset();
    if (!ok)
        logLine("%s was not finished cleanly", path_.c_str());
    return ok;
}

int64_t OutputFile::bytes() const
{
    return context_ && context_->pb ? avio_tell(context_->pb) : 0;
}

} // namespace mediaencoder
