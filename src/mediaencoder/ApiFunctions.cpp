// The C interface: handles are checked against the live sessions, so a null, stale or
// foreign handle answers -1 with a log line instead of crashing.
#include "EncoderLog.h"
#include "EncoderSession.h"
#include "MediaEncoder.h"

extern "C" {
#include <libavutil/log.h>
}

#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>

using mediaencoder::EncoderSession;
using mediaencoder::logLine;

namespace {

std::mutex registryMutex;
std::map<EncoderHandle, std::shared_ptr<EncoderSession>> &registry()
{
    static auto *sessions = new std::map<EncoderHandle, std::shared_ptr<EncoderSession>>;
    return *sessions;
}

// The session behind a handle, kept alive for the call even if another thread closes it.
std::shared_ptr<EncoderSession> sessionOf(EncoderHandle handle, const char *operation)
{
    std::lock_guard lock(registryMutex);
    const auto found = registry().find(handle);
    if (found == registry().end()) {
        logLine("%s: %p is no open encoder", operation, handle);
        return nullptr;
    }
    return found->second;
}

template <typename Call>
auto withSession(EncoderHandle handle, const char *operation, Call call)
    -> decltype(call(std::declval<EncoderSession &>()))
{
    const std::shared_ptr<EncoderSession> session = sessionOf(handle, operation);
    if (!session)
        return -1;
    // No exception crosses the C boundary: a copy that finds no memory is a failed call.
    try {
        return call(*session);
    } catch (const std::exception &error) {
        logLine("%s: %s", operation, error.what());
        return -1;
    }
}

} // namespace

extern "C" {

EncoderHandle apiEncoderCreate(void)
{
    // FFmpeg's own chatter (the encoder's statistics) stays out of the program's log.
    static std::once_flag quiet;
    std::call_once(quiet, [] { av_log_set_level(AV_LOG_ERROR); });
    try {
        auto session = std::make_shared<EncoderSession>();
        EncoderHandle handle = session.get();
        std::lock_guard lock(registryMutex);
        registry().emplace(handle, std::move(session));
        return handle;
    } catch (const std::exception &error) {
        logLine("apiEncoderCreate: %s", error.what());
        return nullptr;
    }
}

int apiEncoderSetOutputPath(EncoderHandle handle, const char *path)
{
    return withSession(handle, __func__, [&](EncoderSession &s) { return s.setOutputPath(path); });
}

int apiEncoderSetImageSize(EncoderHandle handle, int32_t width, int32_t height)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setImageSize(width, height); });
}

int apiEncoderSetImageFormat(EncoderHandle handle, int32_t format)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setImageFormat(format); });
}

int apiEncoderSetOutputSize(EncoderHandle handle, int32_t width, int32_t height)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setOutputSize(width, height); });
}

int apiEncoderSetFps(EncoderHandle handle, double fps)
{
    return withSession(handle, __func__, [&](EncoderSession &s) { return s.setFps(fps); });
}

int apiEncoderSetVideoBitrate(EncoderHandle handle, double bitrate)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setVideoBitrate(bitrate); });
}

int apiEncoderSetAudioSrcContext(EncoderHandle handle, int32_t channels, int32_t sampleRate,
                                 int32_t format)
{
    return withSession(handle, __func__, [&](EncoderSession &s) {
        return s.setAudioSrcContext(channels, sampleRate, format);
    });
}

int apiEncoderSetAudioBitrate(EncoderHandle handle, double bitrate)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setAudioBitrate(bitrate); });
}

int apiEncoderSetAudioEncodeContext(EncoderHandle handle, int32_t channels, int32_t sampleRate)
{
    return withSession(handle, __func__, [&](EncoderSession &s) {
        return s.setAudioEncodeContext(channels, sampleRate);
    });
}

int apiEncoderSetLimitTime(EncoderHandle handle, int32_t seconds)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setLimitTime(seconds); });
}

int apiEncoderSetLimitSize(EncoderHandle handle, int32_t megabytes)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.setLimitSize(megabytes); });
}

int apiEncoderEncode(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.encode(); });
}

int apiEncoderPushVideo(EncoderHandle handle, VIDEO_PACKET *packet, int64_t ptsMs)
{
    return withSession(handle, __func__,
                       [&](EncoderSession &s) { return s.pushVideo(packet, ptsMs); });
}

int apiEncoderPushAudio(EncoderHandle handle, AudioFrame *frame)
{
    return withSession(handle, __func__, [&](EncoderSession &s) { return s.pushAudio(frame); });
}

int64_t apiEncoderGetEncodedTimestamp(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.encodedTimestamp(); });
}

int64_t apiEncoderGetFileSize(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.fileSize(); });
}

int apiEncodePushVideoTrailer(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.pushVideoTrailer(); });
}

int apiEncodePushAudioTrailer(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.pushAudioTrailer(); });
}

int apiEncodeIsDone(EncoderHandle handle)
{
    return withSession(handle, __func__, [](EncoderSession &s) { return s.isDone(); });
}

int apiEncoderClose(EncoderHandle handle)
{
    std::shared_ptr<EncoderSession> session;
    {
        std::lock_guard lock(registryMutex);
        const auto found = registry().find(handle);
        if (found == registry().end()) {
            logLine("apiEncoderClose: %p is no open encoder", handle);
            return -1;
        }
        session = std::move(found->second);
        registry().erase(found);
    }
    // Whatever was pushed is written before the session goes.
    session->finish();
    return 0;
}

} // extern "C"
