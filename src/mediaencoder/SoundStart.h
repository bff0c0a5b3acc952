#pragma once
// Where the first sound of a recording goes on the pictures' timeline.
//
// Pictures carry times from the caller's own zero; sound carries none, only its order.
// Sound and pictures rarely begin together: the sound route may deliver before the screen
// sends its first frame (60-90 ms at 1080p, the first frame is slower), or after. Both are
// noted on the one steady clock as they are pushed: a picture at `ms` pushed at `arrival`
// puts the pictures' zero at or before arrival - ms (a push is never early, only late by
// the composing of the frame); a sound buffer arriving after `soundSeconds` of sound puts
// the sound's first sample at or before arrival - soundSeconds (late by the server's
// delivery). The smallest of each over the first pictures and buffers is the best estimate,
// and their difference where the sound's first sample belongs: after the pictures' zero
// (silence goes first) or before it (the sound before it is left out).
//
// Pushes faster than real time (files, tests) carry no wall-clock meaning: unless most
// steps from one arrival to the next take at least half the time they carry, the sound
// starts at zero as it comes. Most, not all: a live screen's first frame is slow to compose
// and a sound stream may begin with a burst of what the server held. Pure logic: fed with
// arrival seconds, it owns no clock.
#include <cstdint>
#include <optional>

namespace mediaencoder {

class SoundStart {
public:
    static constexpr int kPictures = 5;          // pictures compared before placing
    static constexpr int kSoundBuffers = 5;      // and sound buffers
    static constexpr double kMaxHoldSeconds = 1; // sound held at most while pictures lag
    static constexpr double kLiveStep = 0.5;     // of the time carried, for a live step

    void notePicture(double arrival, int64_t ms);
    // A buffer of `seconds` of sound arrived.
    void noteSound(double arrival, double seconds);
    // Enough is known to place the sound (or it has waited long enough).
    bool ready() const
    {
        return (pictures_.count >= kPictures && sound_.count >= kSoundBuffers) ||
               soundSeconds_ >= kMaxHoldSeconds;
    }
    // Seconds from the pictures' zero to the sound's first sample (negative: the sound began
    // before it); nothing when the arrivals tell no real time.
    std::optional<double> offset() const;

private:
    struct Span {
        int count = 0;
        double lowest = 0; // arrival less the time carried, the smallest
        double lastArrival = 0;
        double lastCarried = 0;
        int liveSteps = 0;
        void note(double arrival, double carried);
        bool live() const { return 2 * liveSteps >= count - 1; }
    };
    Span pictures_;
    Span sound_;
    double soundSeconds_ = 0;
};

} // namespace mediaencoder
