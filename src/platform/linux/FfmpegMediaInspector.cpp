#include "FfmpegMediaInspector.h"

#include "Log.h"

#include <QFileInfo>

extern "C" {
#include <libavformat/avformat.h>
}

#include <algorithm>

std::optional<MediaFacts> FfmpegMediaInspector::inspect(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile())
        return std::nullopt;
    AVFormatContext *context = nullptr;
    if (avformat_open_input(&context, QFile::encodeName(path).constData(), nullptr, nullptr) < 0) {
        capstan::NSLog(lcPlatform, "%s cannot be read as media", qUtf8Printable(path));
        return std::nullopt;
    }
    std::optional<MediaFacts> facts;
    if (avformat_find_stream_info(context, nullptr) >= 0 && context->nb_streams > 0) {
        double seconds = context->duration > 0 ? double(context->duration) / AV_TIME_BASE : 0.0;
        // A container without a total (a fragmented file cut short) has its streams' lengths.
        for (unsigned i = 0; seconds <= 0 && i < context->nb_streams; ++i) {
            const AVStream *stream = context->streams[i];
            if (stream->duration > 0)
                seconds = std::max(seconds, double(stream->duration) * av_q2d(stream->time_base));
        }
        facts = MediaFacts{seconds, quint64(file.size())};
    } else {
        capstan::NSLog(lcPlatform, "%s holds no streams", qUtf8Printable(path));
    }
    avformat_close_input(&context);
    return facts;
}
