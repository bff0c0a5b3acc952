// The sound clock on synthetic timelines: a device whose clock runs off the wall clock
// by a known amount, buffers that arrive with jitter, pauses.
#include "SoundClock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

using mediaencoder::SoundClock;

namespace {

constexpr int kRate = 48000;
constexpr int kBuffer = 480; // 10 ms of sound

// A device producing kRate * (1 + ppm) samples per wall second, in buffers that reach the
// estimator a constant latency plus up to jitter seconds after their last sample, in order.
struct Device {
    double ppm = 0;
    double jitter = 0;
    double latency = 0.02;
    std::mt19937 random{7};
    int64_t produced = 0; // samples since the device started
    double lastArrival = 0;
    double wallOffset = 0; // wall seconds the device has been stopped for

    double wallNow() const { return double(produced) / (kRate * (1 + ppm * 1e-6)) + wallOffset; }
    // The next buffer: its arrival second.
    double next()
    {
        produced += kBuffer;
        std::uniform_real_distribution<double> spread(-jitter, jitter);
        const double arrival = wallNow() + latency + spread(random);
        lastArrival = std::max(arrival, lastArrival);
        return lastArrival;
    }
    void pause(double seconds) { wallOffset += seconds; }
};

struct Stretch {
    double minCorrection = 1e9, maxCorrection = -1e9;
    // Seconds of sound out (as corrected) minus wall seconds it spans.
    double error = 0;
};

// Feeds seconds of sound; the correction range is noted from fromSeconds of this run on.
Stretch feed(SoundClock &clock, Device &device, double seconds, double fromSeconds = 1e9)
{
    Stretch run;
    const int buffers = int(seconds * kRate / kBuffer);
    double out = 0;
    const double wallStart = device.wallNow();
    for (int i = 0; i < buffers; ++i) {
        clock.arrive(device.next(), kBuffer);
        const double ppm = clock.correctionFor(kBuffer);
        out += double(kBuffer) / kRate * (1 + ppm * 1e-6);
        if (double(i) * kBuffer / kRate >= fromSeconds) {
            run.minCorrection = std::min(run.minCorrection, ppm);
            run.maxCorrection = std::max(run.maxCorrection, ppm);
        }
    }
    run.error = out - (device.wallNow() - wallStart);
    return run;
}

// The correction that puts a device's sound exactly on the wall clock.
double idealCorrection(double ppm)
{
    return (1 / (1 + ppm * 1e-6) - 1) * 1e6;
}

} // namespace

TEST(SoundClockTest, FastDeviceConvergesToFewerSamplesOut)
{
    SoundClock clock(kRate);
    Device device{.ppm = 260, .jitter = 0.015};
    const Stretch run = feed(clock, device, 180, 120);
    ASSERT_TRUE(clock.driftPpm());
    EXPECT_NEAR(*clock.driftPpm(), 260, 10);
    EXPECT_NEAR(run.minCorrection, idealCorrection(260), 15);
    EXPECT_NEAR(run.maxCorrection, idealCorrection(260), 15);
}

TEST(SoundClockTest, SlowDeviceConvergesToMoreSamplesOut)
{
    SoundClock clock(kRate);
    Device device{.ppm = -300, .jitter = 0.015};
    const Stretch run = feed(clock, device, 180, 120);
    ASSERT_TRUE(clock.driftPpm());
    EXPECT_NEAR(*clock.driftPpm(), -300, 10);
    EXPECT_NEAR(run.minCorrection, idealCorrection(-300), 15);
    EXPECT_NEAR(run.maxCorrection, idealCorrection(-300), 15);
}

TEST(SoundClockTest, HalfAnHourStaysWithinAFewMillisecondsOfTheWallClock)
{
    SoundClock clock(kRate);
    Device device{.ppm = 260, .jitter = 0.015};
    const Stretch run = feed(clock, device, 1800);
    // Uncorrected this is 0.47 s.
    EXPECT_LT(std::abs(run.error), 0.005);
}

TEST(SoundClockTest, ErrorFromBeforeTheRateWasKnownIsPaidBack)
{
    SoundClock clock(kRate);
    Device device{.ppm = 400};
    // Nothing is corrected until the rate is trusted: that much sound goes out too long.
    const Stretch early = feed(clock, device, SoundClock::kMinSoundSeconds - 1);
    EXPECT_NEAR(early.error, (SoundClock::kMinSoundSeconds - 1) * 400e-6, 0.001);
    const Stretch late = feed(clock, device, 300);
    EXPECT_LT(std::abs(early.error + late.error), 0.001);
}

TEST(SoundClockTest, JitterDoesNotMakeTheCorrectionSwing)
{
    SoundClock steady(kRate);
    Device exact{.ppm = 260};
    const Stretch calm = feed(steady, exact, 600, 120);

    SoundClock jittery(kRate);
    Device noisy{.ppm = 260, .jitter = 0.015};
    const Stretch rough = feed(jittery, noisy, 600, 120);
    // Buffers arriving up to 15 ms early or late move the correction by a few ppm, where a
    // single buffer's timing would say ±3000.
    EXPECT_LT(rough.maxCorrection - rough.minCorrection, 20);
    EXPECT_NEAR(rough.minCorrection, calm.minCorrection, 15);
    EXPECT_NEAR(rough.maxCorrection, calm.maxCorrection, 15);
}

TEST(SoundClockTest, APauseIsNeitherDriftNorAReset)
{
    SoundClock clock(kRate);
    Device device{.ppm = 260, .jitter = 0.015};
    // Long enough for the error of the first 20 s to be paid back.
    feed(clock, device, 150);
    const double before = clock.correctionFor(0);
    ASSERT_TRUE(clock.driftPpm());
    // The caller pauses: the device keeps running, nothing arrives for 10 s.
    device.pause(10);
    const Stretch after = feed(clock, device, 60, 0);
    EXPECT_EQ(clock.stretches(), 2);
    ASSERT_TRUE(clock.driftPpm());
    EXPECT_NEAR(*clock.driftPpm(), 260, 10);
    // Taken for missing sound, 10 s would read as a clock thousands of ppm slow; a reset
    // would leave the sound uncorrected for another 20 s.
    EXPECT_NEAR(after.minCorrection, before, 15);
    EXPECT_NEAR(after.maxCorrection, before, 15);
}

TEST(SoundClockTest, APauseBeforeTheRateIsKnownKeepsWhatWasLearnt)
{
    SoundClock clock(kRate);
    Device device{.ppm = -300, .jitter = 0.015};
    feed(clock, device, 12);
    device.pause(10);
    feed(clock, device, 12);
    // 24 s of sound in two stretches are enough.
    ASSERT_TRUE(clock.driftPpm());
    EXPECT_NEAR(*clock.driftPpm(), -300, 60);
}

TEST(SoundClockTest, NothingIsCorrectedBeforeEnoughSound)
{
    SoundClock clock(kRate);
    Device device{.ppm = 300, .jitter = 0.015};
    const Stretch run = feed(clock, device, SoundClock::kMinSoundSeconds - 1, 0);
    EXPECT_FALSE(clock.driftPpm());
    EXPECT_EQ(run.minCorrection, 0);
    EXPECT_EQ(run.maxCorrection, 0);
}

TEST(SoundClockTest, TheCorrectionNeverExceedsItsBound)
{
    SoundClock clock(kRate);
    Device device{.ppm = 2000, .jitter = 0.015};
    const Stretch run = feed(clock, device, 120, 0);
    ASSERT_TRUE(clock.driftPpm());
    EXPECT_NEAR(*clock.driftPpm(), 2000, 20);
    EXPECT_GE(run.minCorrection, -SoundClock::kMaxCorrectionPpm);
    EXPECT_EQ(run.minCorrection, -SoundClock::kMaxCorrectionPpm);
    EXPECT_LE(run.maxCorrection, SoundClock::kMaxCorrectionPpm);

    SoundClock slow(kRate);
    Device slowDevice{.ppm = -2000, .jitter = 0.015};
    const Stretch slowRun = feed(slow, slowDevice, 120, 0);
    EXPECT_EQ(slowRun.maxCorrection, SoundClock::kMaxCorrectionPpm);
    EXPECT_GE(slowRun.minCorrection, 0);
}

TEST(SoundClockTest, SoundFasterThanRealTimeIsNoDeviceAndLeftAlone)
{
    // A file or a test pushing sound as fast as it can: it all arrives within a second.
    SoundClock clock(kRate);
    double out = 0;
    for (int i = 0; i < 60 * kRate / kBuffer; ++i) {
        clock.arrive(100 + i * 1e-5, kBuffer);
        out += clock.correctionFor(kBuffer);
    }
    EXPECT_FALSE(clock.driftPpm());
    EXPECT_EQ(out, 0);
}
