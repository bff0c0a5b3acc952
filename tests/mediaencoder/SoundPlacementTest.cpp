// Where the sound goes against the pictures: sound and pictures that begin apart (a
// just-built route, a screen whose first frame is slow), sound held up on its way, sound
// that never came. Pushed through the library on a clock of the test's own, a click played
// at a known wall moment must sit where the pictures show that moment.
#include "MediaProbe.h"
#include "TestClockRecording.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using testclock::kRate;
constexpr int kBuffer = 480; // 10 ms
constexpr int kWidth = 64, kHeight = 48;
constexpr double kFrameSeconds = 0.1;
constexpr double kEnd = 3.0;   // wall seconds
constexpr double kClick = 2.0; // wall seconds

struct Take {
    double picturesFrom = 0; // wall second of the first picture, shown at 0 ms
    double soundFrom = 0;    // wall second of the first sample
    bool realTime = true;    // pushes arrive when they happen, not all at once
    // Sound ending in [stallFrom, stallFrom + stall) arrives in one burst at its end.
    double stallFrom = -1, stall = 0;
    // Sound ending in [lostFrom, lostFrom + lost) never arrives.
    double lostFrom = -1, lost = 0;
};

struct Push {
    double arrival;
    int picture = -1; // or the sound buffer
    int buffer = -1;
};

// Every push of the take in the order of arrival.
std::vector<Push> pushesOf(const Take &take)
{
    std::vector<Push> pushes;
    for (int frame = 0; take.picturesFrom + frame * kFrameSeconds < kEnd; ++frame)
        // Composing the picture makes its push a little late.
        pushes.push_back({take.picturesFrom + frame * kFrameSeconds + 0.004, frame});
    for (int n = 0;; ++n) {
        const double end = take.soundFrom + double((n + 1) * kBuffer) / kRate;
        if (end >= kEnd)
            break;
        if (end >= take.lostFrom && end < take.lostFrom + take.lost)
            continue;
        const bool stalled = end >= take.stallFrom && end < take.stallFrom + take.stall;
        pushes.push_back({(stalled ? take.stallFrom + take.stall : end) + 0.002, -1, n});
    }
    std::stable_sort(pushes.begin(), pushes.end(),
                     [](const Push &a, const Push &b) { return a.arrival < b.arrival; });
    return pushes;
}

// File seconds at which the click starts in the decoded sound, less where the pictures
// show its moment.
double clickAgainstPictures(const Take &take)
{
    testclock::Guard guard;
    QTemporaryDir dir;
    EncoderHandle h = testclock::start(dir.filePath("take.mp4").toUtf8(), kWidth, kHeight,
                                       1 / kFrameSeconds, 200);
    EXPECT_NE(h, nullptr);
    if (!h)
        return 1;

    std::vector<uint8_t> pixels(size_t(kWidth) * kHeight * 4, 90);
    VIDEO_PACKET packet{MEDIAENCODER_PIXEL_FORMAT_BGRA, kWidth, kHeight, kWidth * 4, pixels.data(),
                        int32_t(pixels.size())};
    std::vector<int32_t> samples(kBuffer);
    for (const Push &push : pushesOf(take)) {
        testclock::now = take.realTime ? push.arrival : 0;
        if (push.picture >= 0) {
            const double at = push.picture * kFrameSeconds;
            apiEncoderPushVideo(h, &packet, std::llround(at * 1000));
            continue;
        }
        for (int i = 0; i < kBuffer; ++i) {
            const double wall = take.soundFrom + double(push.buffer * kBuffer + i) / kRate;
            const bool loud = wall >= kClick && wall < kClick + 0.02;
            samples[size_t(i)] =
                loud ? int32_t(1e9 * std::sin(2 * M_PI * 1000 * (wall - kClick))) : 0;
        }
        AudioFrame sound{reinterpret_cast<uint8_t *>(samples.data()),
                         int32_t(samples.size() * sizeof(int32_t))};
        apiEncoderPushAudio(h, &sound);
    }
    testclock::finish(h);

    const std::vector<float> sound = MediaProbe::monoSamples(dir.filePath("take.mp4"));
    size_t i = 0;
    while (i < sound.size() && std::abs(sound[i]) < 0.1f)
        ++i;
    EXPECT_LT(i, sound.size()) << "no click";
    return double(i) / kRate - (kClick - take.picturesFrom);
}

} // namespace

TEST(SoundPlacementTest, TheClickSitsOnItsPictureWhicheverBeganFirst)
{
    // Begun together, the click sits where the encoder's priming puts all sound.
    const double together = clickAgainstPictures({0, 0, true});
    EXPECT_NEAR(together, 0.021, 0.01);
    // Sound from before the first picture is left out; sound that began late follows
    // silence.
    EXPECT_NEAR(clickAgainstPictures({0.3, 0, true}), together, 0.004);
    EXPECT_NEAR(clickAgainstPictures({0, 0.4, true}), together, 0.004);
}

TEST(SoundPlacementTest, SoundHeldUpOnItsWayIsNotMistakenForAGap)
{
    const double together = clickAgainstPictures({0, 0, true});
    // A busy machine holds the sound back for 400 ms, then delivers it at once: nothing is
    // missing, and the click after it stays on its picture.
    Take stalled;
    stalled.stallFrom = 1.2;
    stalled.stall = 0.4;
    EXPECT_NEAR(clickAgainstPictures(stalled), together, 0.004);
    // A device gone for 600 ms: what it did not deliver is silence, and the click after it
    // still sits on its picture.
    Take gap;
    gap.lostFrom = 1.2;
    gap.lost = 0.6;
    EXPECT_NEAR(clickAgainstPictures(gap), together, 0.004);
}

TEST(SoundPlacementTest, PushesFasterThanRealTimeStartTheSoundAtZero)
{
    // No wall-clock meaning in the arrivals: the sound is not moved, and what began 0.3 s
    // before the pictures is heard 0.3 s late.
    const double together = clickAgainstPictures({0, 0, true});
    EXPECT_NEAR(clickAgainstPictures({0.3, 0, false}), together + 0.3, 0.004);
}
