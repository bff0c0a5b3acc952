#include "SyntheticMedia.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <thread>

namespace synthetic {

std::vector<uint8_t> picture(int width, int height, int index, bool noisy)
{
    std::vector<uint8_t> pixels(size_t(width) * height * 4);
    uint32_t seed = uint32_t(index) * 2654435761u + 1;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            uint8_t *p = &pixels[(size_t(y) * width + x) * 4];
            if (y < 16) {
                const int bit = x * kCodeBits / width;
                const uint8_t v = (index >> (kCodeBits - 1 - bit)) & 1 ? 255 : 0;
                p[0] = p[1] = p[2] = v;
            } else if (noisy) {
                seed = seed * 1664525u + 1013904223u;
                p[0] = uint8_t(seed >> 24);
                p[1] = uint8_t(seed >> 16);
                p[2] = uint8_t(seed >> 8);
            } else {
                p[0] = uint8_t(x + index * 4);
                p[1] = uint8_t(y * 2);
                p[2] = uint8_t((x / 16 + y / 16) % 2 ? 200 : 40);
            }
            p[3] = 255;
        }
    }
    return pixels;
}

VIDEO_PACKET packetOf(std::vector<uint8_t> &pixels, int width, int height)
{
    return VIDEO_PACKET{MEDIAENCODER_PIXEL_FORMAT_BGRA, width, height, width * 4, pixels.data(),
                        int32_t(pixels.size())};
}

int indexOf(const QByteArray &grey, int width)
{
    int index = 0;
    for (int bit = 0; bit < kCodeBits; ++bit) {
        const int x = (bit * width + width / 2) / kCodeBits;
        index = (index << 1) | (uint8_t(grey[8 * width + x]) > 128 ? 1 : 0);
    }
    return index;
}

std::vector<int32_t> tone(double frequency, int sampleRate, int channels, int64_t start, int count)
{
    std::vector<int32_t> samples(size_t(count) * channels);
    for (int i = 0; i < count; ++i) {
        const double t = double(start + i) / sampleRate;
        const auto v = int32_t(std::sin(2 * M_PI * frequency * t) * 0.5 * 2147483647.0);
        for (int c = 0; c < channels; ++c)
            samples[size_t(i) * channels + c] = v;
    }
    return samples;
}

Result record(const Recording &r)
{
    Result result;
    EncoderHandle h = apiEncoderCreate();
    const QByteArray path = r.path.toUtf8();
    apiEncoderSetOutputPath(h, path.constData());
    if (r.video) {
        apiEncoderSetImageSize(h, r.width, r.height);
        apiEncoderSetImageFormat(h, MEDIAENCODER_IMAGE_FORMAT_DEFAULT);
        apiEncoderSetOutputSize(h, r.width, r.height);
        apiEncoderSetFps(h, r.fps);
        apiEncoderSetVideoBitrate(h, 8000);
    }
    if (r.audio) {
        apiEncoderSetAudioSrcContext(h, r.channels, r.sampleRate, MEDIAENCODER_AUDIO_FORMAT_S32);
        apiEncoderSetAudioBitrate(h, 12800);
        apiEncoderSetAudioEncodeContext(h, r.channels, r.sampleRate);
    }
    apiEncoderSetLimitTime(h, r.limitSeconds);
    apiEncoderSetLimitSize(h, r.limitMegabytes);
    result.encodeResult = apiEncoderEncode(h);
    if (result.encodeResult >= 0) {
        const int pw = r.pushWidth > 0 ? r.pushWidth : r.width;
        const int ph = r.pushHeight > 0 ? r.pushHeight : r.height;
        int64_t ms = 0;
        int64_t soundClock = 0; // samples per channel the sound has run for, pushed or not
        for (int f = 0; f < r.frames; ++f) {
            const int64_t frameMs = std::llround(f * 1000.0 / r.fps);
            const int64_t nextMs = std::llround((f + 1) * 1000.0 / r.fps);
            ms = frameMs + (r.gapAfterFrame >= 0 && f > r.gapAfterFrame ? r.gapMs : 0);
            if (r.video) {
                std::vector<uint8_t> pixels = picture(pw, ph, f, r.noisy);
                VIDEO_PACKET packet = packetOf(pixels, pw, ph);
                apiEncoderPushVideo(h, &packet, ms);
            }
            if (r.audio) {
                // Sound keeps running through a gap in the pictures, as a capture's does.
                const int64_t soundMs =
                    nextMs + (r.gapAfterFrame >= 0 && f >= r.gapAfterFrame ? r.gapMs : 0);
                const int64_t until = soundMs * r.sampleRate / 1000;
                const int count = int(until - soundClock);
                const bool lost = r.soundGapFromMs >= 0 && frameMs >= r.soundGapFromMs &&
                                  frameMs < r.soundGapFromMs + r.soundGapMs;
                if (count > 0 && !lost) {
                    std::vector<int32_t> s =
                        tone(r.toneHz, r.sampleRate, r.channels, soundClock, count);
                    AudioFrame frame{reinterpret_cast<uint8_t *>(s.data()),
                                     int32_t(s.size() * sizeof(int32_t))};
                    apiEncoderPushAudio(h, &frame);
                    result.samplesPushed += count;
                }
                soundClock += std::max(count, 0);
            }
        }
        apiEncodePushVideoTrailer(h);
        apiEncodePushAudioTrailer(h);
        while (apiEncodeIsDone(h) != 1)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        result.encodedMs = apiEncoderGetEncodedTimestamp(h);
        result.fileSize = apiEncoderGetFileSize(h);
    }
    apiEncoderClose(h);
    return result;
}

} // namespace synthetic
