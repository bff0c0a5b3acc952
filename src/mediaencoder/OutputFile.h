#pragma once
// One file of a recording: the container, its streams and the packets written to it.
// Timestamps arrive in the encoders' time bases; each stream is rebased so every file
// starts at 0.
#include "AvPointers.h"
#include "ContainerChoice.h"

#include <string>

namespace mediaencoder {

class OutputFile {
public:
    OutputFile() = default;
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;
    ~OutputFile();

    // Either context may be null: that stream is left out.
    bool open(const std::string &path, const ContainerChoice &choice, AVCodecContext *video,
              AVCodecContext *audio);
    // The packet's times are rebased by the first time seen on its stream in this file.
    int writeVideo(AVPacket *packet);
    int writeAudio(AVPacket *packet);
    // Writes the trailer and closes the file; true when all went to disk.
    bool close();
    bool isOpen() const { return context_ != nullptr; }
    const std::string &path() const { return path_; }
    // Bytes written so far.
    int64_t bytes() const;
    // Encoder ticks of the stream since the file's first packet of it.
    int64_t videoTicksInFile(const AVPacket *packet) const;
    int64_t audioTicksInFile(const AVPacket *packet) const;

private:
    struct Stream {
        AVStream *stream = nullptr;
        AVRational codecTimeBase{1, 1000};
        int64_t firstTicks = AV_NOPTS_VALUE;
    };
    int write(Stream &stream, AVPacket *packet);
    static int64_t ticksInFile(const Stream &stream, const AVPacket *packet);

    FormatContextPtr context_;
    bool headerWritten_ = false;
    Stream video_;
    Stream audio_;
    std::string path_;
};

} // namespace mediaencoder
