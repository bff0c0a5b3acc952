#pragma once
// Port: the program's short sounds (the shutter of a screenshot and of a clip), by the
// names of their resources ("Capture", "1356").
#include <QString>

class SoundPlayer {
public:
    virtual ~SoundPlayer() = default;
    // Loads the named sound ahead of its first play; false when the program has no such
    // sound, which then stays silent.
    virtual bool prepareToPlay(const QString &name) = 0;
    // Starts the sound and returns at once; false when there is nothing to play.
    virtual bool play(const QString &name) = 0;
};
