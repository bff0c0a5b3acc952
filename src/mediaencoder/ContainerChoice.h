#pragma once
// What a file name's extension asks for: the container, its codecs, and how timestamps
// are kept.
#include <optional>
#include <string>

namespace mediaencoder {

enum class VideoCodec { None, H264 };
enum class AudioCodec { AAC, MP3, PCM };

struct ContainerChoice {
    std::string muxer; // FFmpeg's short name
    VideoCodec video = VideoCodec::None;
    AudioCodec audio = AudioCodec::AAC;
    bool fragmented = false;   // MP4 fragments: a cut-off file plays to its last fragment
    bool constantRate = false; // AVI: one tick per frame at the frame rate
};

// By the extension of path, case-insensitive; nothing for an unknown one.
std::optional<ContainerChoice> containerForPath(const std::string &path);
// NAME.EXT's n-th file: NAME.EXT for 1, NAME_n.EXT after that.
std::string splitFileName(const std::string &path, int index);

} // namespace mediaencoder
