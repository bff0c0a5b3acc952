#pragma once
// How fast the sound device's clock runs against the wall clock, and the resampling that
// keeps the sound on the pictures' time.
//
// Pictures carry wall-clock times; sound is timed by its sample count, so a device whose
// clock runs 260 ppm fast puts the sound a quarter of a millisecond later every second.
// Every buffer is noted with the steady-clock second it arrived at: within a stretch of
// uninterrupted sound, arrival time against sound time is a line whose slope is the rate
// of the two clocks (plus the jitter of the arrivals, ~10-20 ms, which the fit averages
// out). A gap in the arrivals (the caller paused, a device went away) starts a new
// stretch with its own offset but keeps the slope learnt so far, as the pictures skip a
// pause too. Old arrivals weigh less and less (a window of about a minute of sound) so
// a clock that wanders slowly is followed.
//
// The correction is the rate (a device that runs fast gives fewer samples out than in)
// plus a share of the error left from before the rate was known, paid back over
// kCatchUpSeconds; it never exceeds kMaxCorrectionPpm, which is inaudible. Pure logic: fed
// with (arrival seconds, sample count) pairs, it owns no clock.
#include <cstdint>
#include <optional>

namespace mediaencoder {

class SoundClock {
public:
    static constexpr double kWindowSeconds = 60;      // sound seconds of memory
    static constexpr double kMinSoundSeconds = 20;    // before the rate is trusted
    static constexpr double kGapSeconds = 0.5;        // arrivals this late start a stretch
    static constexpr double kMaxCorrectionPpm = 500;  // resampling never goes further
    static constexpr double kMaxPlausiblePpm = 10000; // beyond: no live device (files, tests)
    static constexpr double kCatchUpSeconds = 30;     // the early error is paid back over this

    explicit SoundClock(int sampleRate);

    // A buffer of frames (samples per channel) arrived at this steady-clock second.
    void arrive(double seconds, int64_t frames);
    // How many ppm the sound clock runs fast (positive) or slow against the wall clock,
    // once enough sound has arrived to tell and the figure is that of a live device.
    std::optional<double> driftPpm() const;
    // The correction for the frames that arrived last, in ppm of output samples against
    // input (negative: fewer out); noted as applied to them.
    double correctionFor(int64_t frames);
    // Seconds of sound put out beyond (positive) or short of what the wall clock allows,
    // by the best estimate of the rate.
    double owedSeconds() const { return owedSeconds_; }
    int stretches() const { return stretches_; }

private:
    const double rate_;
    // The stretch in progress, in coordinates relative to its first arrival: weighted
    // means and co-moments (updated one point at a time, which keeps them exact).
    double weight_ = 0, meanX_ = 0, meanY_ = 0, cxx_ = 0, cxy_ = 0;
    double stretchSound_ = 0; // sound seconds since the stretch began
    double firstArrivalOfStretch_ = 0;
    double lastArrival_ = 0;
    bool inStretch_ = false;
    // Co-moments of the stretches that ended, each about its own means.
    double closedCxx_ = 0, closedCxy_ = 0;
    int stretches_ = 0;

    double soundSeconds_ = 0; // all sound that arrived
    double uncorrectedSeconds_ = 0;
    bool corrected_ = false;
    double owedSeconds_ = 0;
};

} // namespace mediaencoder
