#pragma once
// What ffprobe and ffmpeg say of a recorded file: its streams, and decoded pictures.
#include <QImage>
#include <QList>
#include <QString>

struct ProbedVideo {
    bool ok = false;
    QString codec;
    int width = 0;
    int height = 0;
    double duration = 0;      // seconds, of the container
    int frames = 0;           // decoded frame count
    QList<double> frameTimes; // presentation times, seconds
};

namespace MediaProbe {

ProbedVideo probeVideo(const QString &path);
// The picture shown at the given time, as RGB32; null when it cannot be decoded.
QImage frameAt(const QString &path, double seconds);

} // namespace MediaProbe
