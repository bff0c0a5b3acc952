// What one round of the half-second device watch costs the main thread: the input list
// read through the hardware port, one fresh server snapshot per property.
#include "EZAudioDevice.h"
#include "PulseAudioHardware.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

int main()
{
    PulseAudioHardware hardware;
    constexpr int kRounds = 40;
    using Clock = std::chrono::steady_clock;
    qsizetype devices = 0;
    double worst = 0;
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < kRounds; ++i) {
        const Clock::time_point t = Clock::now();
        devices = EZAudioDevice::inputDevices(hardware).size();
        worst =
            std::max(worst, std::chrono::duration<double, std::milli>(Clock::now() - t).count());
    }
    const double mean =
        std::chrono::duration<double, std::milli>(Clock::now() - start).count() / kRounds;
    std::printf("device watch: %lld input devices, %.2f ms per round (worst %.2f ms)\n",
                static_cast<long long>(devices), mean, worst);
    return 0;
}
