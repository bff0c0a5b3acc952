#include "MediaProbe.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace {

QByteArray run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(120000) || process.exitCode() != 0)
        return {};
    return process.readAllStandardOutput();
}

} // namespace

namespace MediaProbe {

ProbedVideo probeVideo(const QString &path)
{
    ProbedVideo video;
    const QByteArray json =
        run("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries",
                        "stream=codec_name,width,height:format=duration", "-of", "json", path});
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    const QJsonArray streams = root["streams"].toArray();
    if (streams.isEmpty())
        return video;
    const QJsonObject stream = streams.first().toObject();
    video.codec = stream["codec_name"].toString();
    video.width = stream["width"].toInt();
    video.height = stream["height"].toInt();
    video.duration = root["format"].toObject()["duration"].toString().toDouble();

    const QByteArray times =
        run("ffprobe", {"-v", "error", "-select_streams", "v:0", "-show_entries", "frame=pts_time",
                        "-of", "csv=p=0", path});
    for (const QByteArray &line : times.split('\n'))
        if (!line.trimmed().isEmpty())
            video.frameTimes.append(line.trimmed().toDouble());
    video.frames = int(video.frameTimes.size());
    video.ok = video.width > 0;
    return video;
}

QImage frameAt(const QString &path, double seconds)
{
    const QByteArray png =
        run("ffmpeg", {"-v", "error", "-ss", QString::number(seconds), "-i", path, "-frames:v", "1",
                       "-f", "image2pipe", "-c:v", "png", "-"});
    QImage image;
    image.loadFromData(png, "PNG");
    return image.convertToFormat(QImage::Format_RGB32);
}

} // namespace MediaProbe
