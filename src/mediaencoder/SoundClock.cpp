#include "SoundClock.h"

#include <algorithm>
#include <cmath>

namespace mediaencoder {

SoundClock::SoundClock(int sampleRate) : rate_(sampleRate > 0 ? sampleRate : 1) {}

void SoundClock::arrive(double seconds, int64_t frames)
{
    if (frames <= 0)
        return;
    const double length = double(frames) / rate_;
    soundSeconds_ += length;
    // Later than the sound it carries allows, by more than jitter: the sound stopped for a
    // while, and its offset to the wall clock is a new one.
    if (inStretch_ && seconds - lastArrival_ > length + kGapSeconds) {
        closedCxx_ += cxx_;
        closedCxy_ += cxy_;
        inStretch_ = false;
    }
    lastArrival_ = seconds;
    if (!inStretch_) {
        inStretch_ = true;
        ++stretches_;
        weight_ = meanX_ = meanY_ = cxx_ = cxy_ = 0;
        stretchSound_ = 0;
        firstArrivalOfStretch_ = seconds;
    }
    // Older points fade with the sound that followed them.
    const double fade = std::exp(-length / kWindowSeconds);
    weight_ *= fade;
    cxx_ *= fade;
    cxy_ *= fade;
    closedCxx_ *= fade;
    closedCxy_ *= fade;

    stretchSound_ += length;
    const double x = stretchSound_;
    const double y = seconds - firstArrivalOfStretch_;
    weight_ += 1;
    const double dx = x - meanX_;
    meanX_ += dx / weight_;
    meanY_ += (y - meanY_) / weight_;
    cxx_ += dx * (x - meanX_);
    cxy_ += dx * (y - meanY_);
}

std::optional<double> SoundClock::driftPpm() const
{
    if (soundSeconds_ < kMinSoundSeconds)
        return std::nullopt;
    const double sxx = closedCxx_ + cxx_;
    const double sxy = closedCxy_ + cxy_;
    if (!(sxx > 0) || !(sxy > 0))
        return std::nullopt;
    // Wall seconds per sound second.
    const double slope = sxy / sxx;
    const double ppm = (1 / slope - 1) * 1e6;
    if (!(std::abs(ppm) <= kMaxPlausiblePpm))
        return std::nullopt;
    return ppm;
}

double SoundClock::correctionFor(int64_t frames)
{
    const double length = double(std::max<int64_t>(frames, 0)) / rate_;
    const std::optional<double> drift = driftPpm();
    if (!drift) {
        if (!corrected_)
            uncorrectedSeconds_ += length;
        return 0;
    }
    // Output per input that matches the wall clock.
    const double ideal = 1 / (1 + *drift * 1e-6);
    if (!corrected_) {
        // What went out uncorrected before the rate was known is owed now.
        corrected_ = true;
        owedSeconds_ = uncorrectedSeconds_ * (1 - ideal);
    }
    const double wanted = (ideal - 1) * 1e6 - owedSeconds_ / kCatchUpSeconds * 1e6;
    const double ppm = std::clamp(wanted, -kMaxCorrectionPpm, kMaxCorrectionPpm);
    owedSeconds_ += length * (1 + ppm * 1e-6 - ideal);
    return ppm;
}

} // namespace mediaencoder
