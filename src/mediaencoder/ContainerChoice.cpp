#include "ContainerChoice.h"

#include <algorithm>
#include <cctype>

namespace mediaencoder {

namespace {

// The extension with its dot, lower-cased; empty when the last path part has none.
std::string extensionOf(const std::string &path)
{
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return {};
    std::string ext = path.substr(dot);
    std::transform(ext.begin(), ext.end(), ext.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return ext;
}

} // namespace

std::optional<ContainerChoice> containerForPath(const std::string &path)
{
    const std::string ext = extensionOf(path);
    if (ext == ".mp4" || ext == ".m4v")
        return ContainerChoice{"mp4", VideoCodec::H264, AudioCodec::AAC, true, false};
    if (ext == ".mov")
        return ContainerChoice{"mov", VideoCodec::H264, AudioCodec::AAC, true, false};
    if (ext == ".flv")
        return ContainerChoice{"flv", VideoCodec::H264, AudioCodec::AAC, false, false};
    if (ext == ".avi")
        return ContainerChoice{"avi", VideoCodec::H264, AudioCodec::MP3, false, true};
    if (ext == ".mp3")
        return ContainerChoice{"mp3", VideoCodec::None, AudioCodec::MP3, false, false};
    if (ext == ".wav")
        return ContainerChoice{"wav", VideoCodec::None, AudioCodec::PCM, false, false};
    if (ext == ".m4a")
        return ContainerChoice{"ipod", VideoCodec::None, AudioCodec::AAC, true, false};
    return std::nullopt;
}

std::string splitFileName(const std::string &path, int index)
{
    if (index <= 1)
        return path;
    const size_t slash = path.find_last_of('/');
    size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        dot = path.size();
    return path.substr(0, dot) + "_" + std::to_string(index) + path.substr(dot);
}

} // namespace mediaencoder
