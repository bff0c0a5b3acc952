#pragma once
// Recordings of small pictures and mono 48 kHz sound through the library, timed by a clock of
// the test's own, so minutes of sound can be pushed in seconds.
#include "ArrivalClock.h"
#include "MediaEncoder.h"

#include <QByteArray>
#include <atomic>
#include <chrono>
#include <thread>

namespace testclock {

constexpr int kRate = 48000;

// The seconds the library reads as the arrival of every push while a Guard lives.
inline std::atomic<double> now{0};
inline double readNow()
{
    return now.load();
}

struct Guard {
    explicit Guard(bool correctClock = true)
    {
        mediaencoder::setArrivalClock(readNow);
        mediaencoder::setClockCorrectionEnabled(correctClock);
    }
    ~Guard()
    {
        mediaencoder::setArrivalClock(nullptr);
        mediaencoder::setClockCorrectionEnabled(true);
    }
    Guard(const Guard &) = delete;
    Guard &operator=(const Guard &) = delete;
};

// A started recording into path, or null when the library refused it.
inline EncoderHandle start(const QByteArray &path, int width, int height, double fps,
                           double videoKbps)
{
    EncoderHandle h = apiEncoderCreate();
    apiEncoderSetOutputPath(h, path.constData());
    apiEncoderSetImageSize(h, width, height);
    apiEncoderSetImageFormat(h, MEDIAENCODER_IMAGE_FORMAT_DEFAULT);
    apiEncoderSetOutputSize(h, width, height);
    apiEncoderSetFps(h, fps);
    apiEncoderSetVideoBitrate(h, videoKbps);
    apiEncoderSetAudioSrcContext(h, 1, kRate, MEDIAENCODER_AUDIO_FORMAT_S32);
    apiEncoderSetAudioBitrate(h, 6400);
    apiEncoderSetAudioEncodeContext(h, 1, kRate);
    if (apiEncoderEncode(h) < 0) {
        apiEncoderClose(h);
        return nullptr;
    }
    return h;
}

// Ends the recording, waits for its file and closes it.
inline void finish(EncoderHandle h)
{
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    while (apiEncodeIsDone(h) != 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    apiEncoderClose(h);
}

} // namespace testclock
