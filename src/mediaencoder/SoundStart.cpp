#include "SoundStart.h"

#include <algorithm>

namespace mediaencoder {

void SoundStart::Span::note(double arrival, double carried)
{
    const double start = arrival - carried;
    if (count == 0)
        lowest = start;
    else
        lowest = std::min(lowest, start);
    if (count > 0 && arrival - lastArrival >= kLiveStep * (carried - lastCarried))
        ++liveSteps;
    lastArrival = arrival;
    lastCarried = carried;
    ++count;
}

void SoundStart::notePicture(double arrival, int64_t ms)
{
    if (pictures_.count < kPictures)
        pictures_.note(arrival, double(ms) / 1000.0);
}

void SoundStart::noteSound(double arrival, double seconds)
{
    soundSeconds_ += seconds;
    sound_.note(arrival, soundSeconds_);
}

std::optional<double> SoundStart::offset() const
{
    // One picture is a recording at a low rate; one buffer of sound is too little to tell.
    if (pictures_.count == 0 || sound_.count < 2 || !pictures_.live() || !sound_.live())
        return std::nullopt;
    return sound_.lowest - pictures_.lowest;
}

} // namespace mediaencoder
