#pragma once
// The MediaInspector port on FFmpeg's libavformat: the file is opened and its streams probed,
// so a fragmented MP4 cut off by a crash reads up to its last whole fragment.
#include "MediaInspector.h"

class FfmpegMediaInspector final : public MediaInspector {
public:
    std::optional<MediaFacts> inspect(const QString &path) override;
};
