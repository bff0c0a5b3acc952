#include "ArrivalClock.h"

#include <atomic>
#include <chrono>

namespace mediaencoder {

namespace {

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::atomic<ClockFunction> clockFunction{nullptr};
std::atomic<bool> correctionEnabled{true};

} // namespace

double arrivalSeconds()
{
    const ClockFunction clock = clockFunction.load();
    return clock ? clock() : steadySeconds();
}

void setArrivalClock(ClockFunction clock)
{
    clockFunction = clock;
}

bool clockCorrectionEnabled()
{
    return correctionEnabled.load();
}

void setClockCorrectionEnabled(bool enabled)
{
    correctionEnabled = enabled;
}

} // namespace mediaencoder
