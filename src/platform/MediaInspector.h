#pragma once
// Port: what a media file says of itself, read from the file (its container's duration and
// its size), so a recording cut short can be entered in the list without its session.
#include <QString>
#include <optional>

struct MediaFacts {
    double durationSeconds = 0;
    quint64 sizeBytes = 0;
};

class MediaInspector {
public:
    virtual ~MediaInspector() = default;
    // Nothing when the file is missing or cannot be read as media.
    virtual std::optional<MediaFacts> inspect(const QString &path) = 0;
};
