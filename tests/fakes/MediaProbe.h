#pragma once
// What ffprobe and ffmpeg say of a recorded file: its streams, and decoded pictures and
// sound.
#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <vector>

struct ProbedVideo {
    bool ok = false;
    QString codec;
    int width = 0;
    int height = 0;
    double duration = 0;      // seconds, of the container
    int frames = 0;           // decoded frame count
    QList<double> frameTimes; // presentation times, seconds
};

struct ProbedAudio {
    bool ok = false;
    QString codec;
    int sampleRate = 0;
    int channels = 0;
    double duration = 0; // seconds, of the decoded samples
};

namespace MediaProbe {

ProbedVideo probeVideo(const QString &path);
ProbedAudio probeAudio(const QString &path);
// The picture shown at the given time, as RGB32; null when it cannot be decoded.
QImage frameAt(const QString &path, double seconds);
// Every picture, as 8-bit grey, width x height bytes each.
std::vector<QByteArray> greyFrames(const QString &path, int width, int height);
// The first channel's samples as floats at the file's own rate.
std::vector<float> monoSamples(const QString &path);
// The frequency of a tone, from its rising zero crossings.
double toneFrequency(const std::vector<float> &samples, int sampleRate);
// The amplitude (1 is full scale) of one frequency in the sound, as a tuned filter sees it.
double toneAmplitude(const std::vector<float> &samples, int sampleRate, double frequency);
// True when ffmpeg decodes the whole file without an error.
bool decodesCleanly(const QString &path);

} // namespace MediaProbe
