// Ten minutes of a sound device whose clock runs 0.03 % fast against the wall clock,
// pushed with pictures through the library and libswresample on a clock of the test's own
// (so it takes seconds), with a pause in the middle. A click played at known wall moments
// must sit where the pictures' timestamps say, as ffmpeg decodes the file.
#include "MediaProbe.h"
#include "TestClockRecording.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <optional>
#include <random>
#include <vector>

namespace {

using testclock::kRate;
constexpr int kBuffer = 480;  // 10 ms of sound
constexpr int kFrameMs = 100; // pictures at 10 fps
constexpr int kWidth = 160, kHeight = 120;
constexpr double kSeconds = 600; // wall seconds, pause included
constexpr double kPauseFrom = 300, kPauseSeconds = 10;
constexpr double kClicks[] = {5, 150, 450, 595}; // wall seconds
constexpr double kClickSeconds = 0.02;

bool paused(double wall)
{
    return wall >= kPauseFrom && wall < kPauseFrom + kPauseSeconds;
}

// The file time a wall moment is shown at: the pause is cut out.
double fileTime(double wall)
{
    return wall >= kPauseFrom + kPauseSeconds ? wall - kPauseSeconds : wall;
}

// Records with the device running ppm fast; answers the wall seconds of sound the pause
// left out (whole buffers: 10 s give or take one), or nothing when the library refused.
std::optional<double> record(const QString &path, double ppm, bool correct)
{
    testclock::Guard guard(correct);
    EncoderHandle h = testclock::start(path.toUtf8(), kWidth, kHeight, 1000.0 / kFrameMs, 500);
    if (!h)
        return std::nullopt;
    std::vector<uint8_t> pixels(size_t(kWidth) * kHeight * 4, 128);
    VIDEO_PACKET packet{MEDIAENCODER_PIXEL_FORMAT_BGRA, kWidth, kHeight, kWidth * 4, pixels.data(),
                        int32_t(pixels.size())};
    std::vector<int32_t> samples(kBuffer);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> jitter(-0.015, 0.015);
    const double deviceRate = kRate * (1 + ppm * 1e-6);
    int64_t produced = 0; // samples the device made, pushed or not
    int64_t frame = 0;
    double lastArrival = 0;
    double soundCut = 0;
    for (;;) {
        const double bufferEnd = double(produced + kBuffer) / deviceRate;
        const double pictureAt = double(frame * kFrameMs) / 1000;
        if (bufferEnd >= kSeconds && pictureAt >= kSeconds)
            break;
        if (pictureAt <= bufferEnd) {
            if (!paused(pictureAt)) {
                testclock::now = pictureAt;
                apiEncoderPushVideo(h, &packet, std::llround(fileTime(pictureAt) * 1000));
            }
            ++frame;
            continue;
        }
        // A click is a 1 kHz burst starting at the sample the device plays at that moment.
        for (int i = 0; i < kBuffer; ++i) {
            const double wall = double(produced + i) / deviceRate;
            double value = 0;
            for (const double click : kClicks)
                if (wall >= click && wall < click + kClickSeconds)
                    value = 0.5 * std::sin(2 * M_PI * 1000 * (wall - click));
            samples[size_t(i)] = int32_t(value * 2147483647.0);
        }
        produced += kBuffer;
        if (paused(bufferEnd)) {
            soundCut += kBuffer / deviceRate;
            continue;
        }
        lastArrival = std::max(lastArrival, bufferEnd + 0.02 + jitter(random));
        testclock::now = lastArrival;
        AudioFrame sound{reinterpret_cast<uint8_t *>(samples.data()),
                         int32_t(samples.size() * sizeof(int32_t))};
        apiEncoderPushAudio(h, &sound);
    }
    testclock::finish(h);
    return soundCut;
}

// File seconds where each click starts in the decoded sound.
std::vector<double> clickOnsets(const QString &path)
{
    const std::vector<float> sound = MediaProbe::monoSamples(path);
    std::vector<double> onsets;
    for (const double click : kClicks) {
        // Search from 200 ms before where the pictures put it.
        size_t i = size_t(std::max(0.0, fileTime(click) - 0.2) * kRate);
        const size_t end = std::min(sound.size(), i + size_t(kRate));
        while (i < end && std::abs(sound[i]) < 0.1f)
            ++i;
        onsets.push_back(i < end ? double(i) / kRate : -1);
    }
    return onsets;
}

} // namespace

// How much later than the first click each click is heard than the pictures say, less
// what the pause cut from the sound beyond what it cut from the pictures (part of a
// buffer). The first click sits where the encoder's priming puts all sound (21 ms of AAC),
// before the clocks have had time to part.
std::vector<double> drifts(const QString &path, double soundCut)
{
    const std::vector<double> onsets = clickOnsets(path);
    std::vector<double> result;
    for (size_t i = 0; i < onsets.size(); ++i) {
        const double cutShift = kClicks[i] >= kPauseFrom ? soundCut - kPauseSeconds : 0;
        result.push_back(onsets[i] - onsets[0] - (fileTime(kClicks[i]) - fileTime(kClicks[0])) +
                         cutShift);
        std::printf("click at %.0f s: heard at %.4f s of the file, %+.1f ms\n", kClicks[i],
                    onsets[i], result.back() * 1000);
    }
    EXPECT_NEAR(onsets[0], fileTime(kClicks[0]), 0.03);
    return result;
}

TEST(ClockDriftTest, SoundFromAFastDeviceStaysOnThePictures)
{
    QTemporaryDir dir;
    const QString path = dir.filePath("drift.mp4");
    const std::optional<double> soundCut = record(path, 300, true);
    ASSERT_TRUE(soundCut);
    const std::vector<double> drift = drifts(path, *soundCut);
    for (size_t i = 1; i < drift.size(); ++i) {
        SCOPED_TRACE(kClicks[i]);
        EXPECT_NEAR(drift[i], 0, 0.01);
    }
    // The sound track ends with the pictures (give or take the encoder's priming and the
    // padding of its last frame).
    const ProbedVideo video = MediaProbe::probeVideo(path);
    const ProbedAudio audio = MediaProbe::probeAudio(path);
    ASSERT_TRUE(video.ok && audio.ok && !video.frameTimes.isEmpty());
    const double pictures = video.frameTimes.back() + kFrameMs / 1000.0;
    EXPECT_NEAR(audio.duration, pictures, 0.05);
}

TEST(ClockDriftTest, WithoutTheCorrectionTheSameSoundDrifts)
{
    // Shows the recording above measures what it claims: uncorrected, the sound runs
    // 300 ppm long, 177 ms by the last click.
    QTemporaryDir dir;
    const QString path = dir.filePath("uncorrected.mp4");
    const std::optional<double> soundCut = record(path, 300, false);
    ASSERT_TRUE(soundCut);
    const std::vector<double> drift = drifts(path, *soundCut);
    EXPECT_NEAR(drift.back(), (fileTime(kClicks[3]) - fileTime(kClicks[0])) * 300e-6, 0.005);
    const ProbedVideo video = MediaProbe::probeVideo(path);
    const ProbedAudio audio = MediaProbe::probeAudio(path);
    ASSERT_TRUE(video.ok && audio.ok && !video.frameTimes.isEmpty());
    EXPECT_GT(audio.duration - (video.frameTimes.back() + kFrameMs / 1000.0), 0.15);
}
