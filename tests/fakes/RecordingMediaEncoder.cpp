#include "RecordingMediaEncoder.h"

#include <atomic>
#include <condition_variable>
#include <set>

namespace RecordingMediaEncoder {
namespace {

std::mutex mutex;
std::vector<Call> log;
std::map<std::string, int64_t> results;
int pollsBeforeDone = 0;
int created = 0;
char handles[64];
std::set<EncoderHandle> open;
std::vector<Call> strays;
std::string heldName;
int held = 0;
std::condition_variable heldChanged;

void waitIfHeld(const char *name)
{
    std::unique_lock lock(mutex);
    if (heldName != name)
        return;
    ++held;
    heldChanged.wait(lock, [name] { return heldName != name; });
    --held;
}

int64_t note(const char *name, EncoderHandle handle, QString args = {}, QByteArray payload = {})
{
    std::lock_guard lock(mutex);
    log.push_back({name, handle, std::move(args), std::move(payload)});
    if (!open.count(handle))
        strays.push_back(log.back());
    const auto it = results.find(name);
    if (it != results.end())
        return it->second;
    return 0;
}

} // namespace

void reset()
{
    std::lock_guard lock(mutex);
    log.clear();
    results = {{"apiEncoderSetLimitTime", 1}, {"apiEncoderSetLimitSize", 1}};
    pollsBeforeDone = 0;
    created = 0;
    open.clear();
    strays.clear();
    heldName.clear();
    heldChanged.notify_all();
}

void hold(const std::string &name)
{
    std::lock_guard lock(mutex);
    heldName = name;
}

void releaseHeld()
{
    std::lock_guard lock(mutex);
    heldName.clear();
    heldChanged.notify_all();
}

int heldCount()
{
    std::lock_guard lock(mutex);
    return held;
}

std::vector<Call> calls()
{
    std::lock_guard lock(mutex);
    return log;
}

QStringList callNames()
{
    QStringList names;
    for (const Call &call : calls())
        names.append(QString::fromStdString(call.name));
    return names;
}

std::vector<Call> callsNamed(const std::string &name)
{
    std::vector<Call> found;
    for (const Call &call : calls())
        if (call.name == name)
            found.push_back(call);
    return found;
}

void setResult(const std::string &name, int64_t result)
{
    std::lock_guard lock(mutex);
    results[name] = result;
}

void setPollsBeforeDone(int polls)
{
    std::lock_guard lock(mutex);
    pollsBeforeDone = polls;
}

int handlesCreated()
{
    std::lock_guard lock(mutex);
    return created;
}

int openHandles()
{
    std::lock_guard lock(mutex);
    return int(open.size());
}

std::vector<Call> strayCalls()
{
    std::lock_guard lock(mutex);
    return strays;
}

} // namespace RecordingMediaEncoder

using namespace RecordingMediaEncoder;

extern "C" {

EncoderHandle apiEncoderCreate(void)
{
    int index = 0;
    {
        std::lock_guard lock(RecordingMediaEncoder::mutex);
        index = created++ % 64;
    }
    EncoderHandle handle = &handles[index];
    {
        std::lock_guard lock(RecordingMediaEncoder::mutex);
        open.insert(handle);
    }
    note("apiEncoderCreate", handle);
    return handle;
}

int apiEncoderSetOutputPath(EncoderHandle h, const char *path)
{
    return int(note("apiEncoderSetOutputPath", h, QString::fromUtf8(path)));
}

int apiEncoderSetImageSize(EncoderHandle h, int32_t width, int32_t height)
{
    return int(note("apiEncoderSetImageSize", h, QStringLiteral("%1,%2").arg(width).arg(height)));
}

int apiEncoderSetImageFormat(EncoderHandle h, int32_t format)
{
    return int(note("apiEncoderSetImageFormat", h, QString::number(format)));
}

int apiEncoderSetOutputSize(EncoderHandle h, int32_t width, int32_t height)
{
    return int(note("apiEncoderSetOutputSize", h, QStringLiteral("%1,%2").arg(width).arg(height)));
}

int apiEncoderSetFps(EncoderHandle h, double fps)
{
    return int(note("apiEncoderSetFps", h, QString::number(fps, 'g', 10)));
}

int apiEncoderSetVideoBitrate(EncoderHandle h, double bitrate)
{
    return int(note("apiEncoderSetVideoBitrate", h, QString::number(bitrate, 'g', 10)));
}

int apiEncoderSetAudioSrcContext(EncoderHandle h, int32_t channels, int32_t rate, int32_t format)
{
    return int(note("apiEncoderSetAudioSrcContext", h,
                    QStringLiteral("%1,%2,%3").arg(channels).arg(rate).arg(format)));
}

int apiEncoderSetAudioBitrate(EncoderHandle h, double bitrate)
{
    return int(note("apiEncoderSetAudioBitrate", h, QString::number(bitrate, 'g', 10)));
}

int apiEncoderSetAudioEncodeContext(EncoderHandle h, int32_t channels, int32_t rate)
{
    return int(note("apiEncoderSetAudioEncodeContext", h,
                    QStringLiteral("%1,%2").arg(channels).arg(rate)));
}

int apiEncoderSetLimitTime(EncoderHandle h, int32_t seconds)
{
    return int(note("apiEncoderSetLimitTime", h, QString::number(seconds)));
}

int apiEncoderSetLimitSize(EncoderHandle h, int32_t megabytes)
{
    return int(note("apiEncoderSetLimitSize", h, QString::number(megabytes)));
}

int apiEncoderEncode(EncoderHandle h)
{
    waitIfHeld("apiEncoderEncode");
    return int(note("apiEncoderEncode", h));
}

int apiEncoderPushVideo(EncoderHandle h, VIDEO_PACKET *packet, int64_t pts)
{
    QByteArray row;
    if (packet && packet->data)
        row = QByteArray(reinterpret_cast<const char *>(packet->data), packet->bytesPerRow);
    waitIfHeld("apiEncoderPushVideo");
    return int(note("apiEncoderPushVideo", h,
                    QStringLiteral("%1,%2x%3,%4")
                        .arg(packet ? packet->format : 0)
                        .arg(packet ? packet->width : 0)
                        .arg(packet ? packet->height : 0)
                        .arg(pts),
                    row));
}

int apiEncoderPushAudio(EncoderHandle h, AudioFrame *frame)
{
    return int(note("apiEncoderPushAudio", h, QString::number(frame->size),
                    QByteArray(reinterpret_cast<const char *>(frame->buffer), frame->size)));
}

int64_t apiEncoderGetEncodedTimestamp(EncoderHandle h)
{
    return note("apiEncoderGetEncodedTimestamp", h);
}

int64_t apiEncoderGetFileSize(EncoderHandle h)
{
    return note("apiEncoderGetFileSize", h);
}

int apiEncodePushVideoTrailer(EncoderHandle h)
{
    return int(note("apiEncodePushVideoTrailer", h));
}

int apiEncodePushAudioTrailer(EncoderHandle h)
{
    return int(note("apiEncodePushAudioTrailer", h));
}

int apiEncodeIsDone(EncoderHandle h)
{
    const int64_t scripted = note("apiEncodeIsDone", h);
    std::lock_guard lock(RecordingMediaEncoder::mutex);
    if (results.count("apiEncodeIsDone"))
        return int(scripted);
    if (pollsBeforeDone > 0) {
        --pollsBeforeDone;
        return 0;
    }
    return 1;
}

int apiEncoderClose(EncoderHandle h)
{
    const int64_t result = note("apiEncoderClose", h);
    std::lock_guard lock(RecordingMediaEncoder::mutex);
    return open.erase(h) ? int(result) : -1;
}

} // extern "C"
