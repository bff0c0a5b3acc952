#pragma once
// Synthetic input for the encoder library: moving BGRA pictures with their index burnt
// in as a bar code, and a sine tone as interleaved 32-bit samples.
#include "MediaEncoder.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

namespace synthetic {

constexpr int kCodeBits = 16;

// A BGRA picture: its top 16 rows a bar code of index, below a pattern that moves with
// index; noisy makes every pixel change every frame.
std::vector<uint8_t> picture(int width, int height, int index, bool noisy = false);
VIDEO_PACKET packetOf(std::vector<uint8_t> &pixels, int width, int height);
// The index a decoded grey picture carries.
int indexOf(const QByteArray &grey, int width);

// Interleaved 32-bit samples of a tone at half scale; `start` counts samples per channel.
std::vector<int32_t> tone(double frequency, int sampleRate, int channels, int64_t start, int count);

struct Recording {
    QString path;
    int width = 320, height = 240;
    int pushWidth = 0, pushHeight = 0; // pictures of another size; 0: the same
    double fps = 25;
    int frames = 75;
    int64_t gapAfterFrame = -1; // timestamps jump by gapMs after this frame
    int gapMs = 0;
    int64_t soundGapFromMs = -1; // no sound is pushed for soundGapMs from here on
    int soundGapMs = 0;
    bool video = true;
    bool audio = true;
    int channels = 2;
    int sampleRate = 44100;
    double toneHz = 440;
    int limitSeconds = 0;
    int limitMegabytes = 0;
    bool noisy = false;
};

struct Result {
    int encodeResult = -1;
    int64_t encodedMs = 0;
    int64_t fileSize = 0;
    int64_t samplesPushed = 0;
};

// Records through the C interface as fast as the library takes it.
Result record(const Recording &recording);

} // namespace synthetic
