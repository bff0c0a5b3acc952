#include "MediaProbe.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

struct Run {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

Run run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    Run result;
    if (!process.waitForFinished(120000))
        return result;
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

QJsonObject firstStream(const QString &path, const char *selector, const char *entries)
{
    const Run probe = run("ffprobe", {"-v", "error", "-select_streams", selector, "-show_entries",
                                      entries, "-of", "json", path});
    const QJsonObject root = QJsonDocument::fromJson(probe.out).object();
    const QJsonArray streams = root["streams"].toArray();
    QJsonObject stream = streams.isEmpty() ? QJsonObject() : streams.first().toObject();
    stream["format_duration"] = root["format"].toObject()["duration"];
    return stream;
}

} // namespace

namespace MediaProbe {

ProbedVideo probeVideo(const QString &path)
{
    ProbedVideo video;
    const QJsonObject stream =
        firstStream(path, "v:0", "stream=codec_name,width,height:format=duration");
    if (!stream.contains("codec_name"))
        return video;
    video.codec = stream["codec_name"].toString();
    video.width = stream["width"].toInt();
    video.height = stream["height"].toInt();
    video.duration = stream["format_duration"].toString().toDouble();
    const Run times = run("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                                      "frame=best_effort_timestamp_time", "-of", "csv=p=0", path});
    for (const QByteArray &line : times.out.split('\n'))
        if (!line.trimmed().isEmpty())
            video.frameTimes.append(line.trimmed().toDouble());
    video.frames = int(video.frameTimes.size());
    video.ok = video.width > 0;
    return video;
}

ProbedAudio probeAudio(const QString &path)
{
    ProbedAudio audio;
    const QJsonObject stream =
        firstStream(path, "a:0", "stream=codec_name,sample_rate,channels:format=duration");
    if (!stream.contains("codec_name"))
        return audio;
    audio.codec = stream["codec_name"].toString();
    audio.sampleRate = stream["sample_rate"].toString().toInt();
    audio.channels = stream["channels"].toInt();
    const std::vector<float> samples = monoSamples(path);
    audio.duration = audio.sampleRate > 0 ? double(samples.size()) / audio.sampleRate : 0;
    audio.ok = audio.sampleRate > 0;
    return audio;
}

QImage frameAt(const QString &path, double seconds)
{
    const Run png = run("ffmpeg", {"-v", "error", "-ss", QString::number(seconds), "-i", path,
                                   "-frames:v", "1", "-f", "image2pipe", "-c:v", "png", "-"});
    QImage image;
    image.loadFromData(png.out, "PNG");
    return image.convertToFormat(QImage::Format_RGB32);
}

std::vector<QByteArray> greyFrames(const QString &path, int width, int height)
{
    const Run raw = run("ffmpeg", {"-v", "error", "-i", path, "-map", "0:v:0", "-fps_mode",
                                   "passthrough", "-f", "rawvideo", "-pix_fmt", "gray", "-"});
    std::vector<QByteArray> frames;
    const qsizetype size = qsizetype(width) * height;
    for (qsizetype at = 0; at + size <= raw.out.size(); at += size)
        frames.push_back(raw.out.mid(at, size));
    return frames;
}

std::vector<float> monoSamples(const QString &path)
{
    const Run raw = run("ffmpeg", {"-v", "error", "-i", path, "-map", "0:a:0", "-af",
                                   "pan=mono|c0=c0", "-f", "f32le", "-"});
    std::vector<float> samples(size_t(raw.out.size()) / sizeof(float));
    std::memcpy(samples.data(), raw.out.constData(), samples.size() * sizeof(float));
    return samples;
}

double toneFrequency(const std::vector<float> &samples, int sampleRate)
{
    // Skip the encoder's start and end, where padding and priming sit.
    const size_t margin = std::min(samples.size() / 4, size_t(sampleRate) / 10);
    int crossings = 0;
    size_t first = 0, last = 0;
    for (size_t i = margin + 1; i + margin < samples.size(); ++i) {
        if (samples[i - 1] < 0 && samples[i] >= 0) {
            if (crossings == 0)
                first = i;
            last = i;
            ++crossings;
        }
    }
    if (crossings < 2)
        return 0;
    return double(crossings - 1) * sampleRate / double(last - first);
}

double toneAmplitude(const std::vector<float> &samples, int sampleRate, double frequency)
{
    // Goertzel over 100 ms blocks, wide enough for a tone a resampler moved by a few hertz;
    // the median block, so a glitch or the encoder's priming does not count.
    const size_t block = size_t(sampleRate) / 10;
    const double coefficient = 2 * std::cos(2 * M_PI * frequency / sampleRate);
    std::vector<double> amplitudes;
    for (size_t start = 0; block > 0 && start + block <= samples.size(); start += block) {
        double previous = 0, beforePrevious = 0;
        for (size_t i = start; i < start + block; ++i) {
            const double current = samples[i] + coefficient * previous - beforePrevious;
            beforePrevious = previous;
            previous = current;
        }
        const double power = previous * previous + beforePrevious * beforePrevious -
                             coefficient * previous * beforePrevious;
        amplitudes.push_back(2 * std::sqrt(std::max(power, 0.0)) / double(block));
    }
    if (amplitudes.empty())
        return 0;
    std::nth_element(amplitudes.begin(), amplitudes.begin() + amplitudes.size() / 2,
                     amplitudes.end());
    return amplitudes[amplitudes.size() / 2];
}

bool decodesCleanly(const QString &path)
{
    // Every picture is passed on with its own time: a screen recording's frames come at
    // varying intervals, and timing them anew at the nominal rate would put two close ones
    // on one tick and count that as an error of the file.
    const Run decode = run("ffmpeg", {"-v", "error", "-i", path, "-fps_mode", "passthrough",
                                      "-enc_time_base:v", "-1", "-f", "null", "-"});
    return decode.exitCode == 0 && decode.err.trimmed().isEmpty();
}

} // namespace MediaProbe
