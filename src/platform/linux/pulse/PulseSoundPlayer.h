#pragma once
// The program's sounds played through the sound server: 16-bit PCM WAV files among the
// program's resources (":/sounds/<name>.wav"), sent to the default output by a thread of
// the player's own, so no caller waits for the server.
#include "SoundPlayer.h"

#include <QByteArray>
#include <QHash>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>

// The samples of a WAV file and their format; nothing for anything but 16-bit PCM.
struct WavSound {
    int channels = 0;
    int rate = 0;
    QByteArray samples; // signed 16-bit little-endian, interleaved
};
std::optional<WavSound> parseWav(const QByteArray &file);

class PulseSoundPlayer final : public SoundPlayer {
public:
    PulseSoundPlayer();
    ~PulseSoundPlayer() override;
    bool prepareToPlay(const QString &name) override;
    bool play(const QString &name) override;
    // Waits until every sound asked for has been played (for tests and the end).
    void waitUntilPlayed();

private:
    const WavSound *sound(const QString &name); // under mutex_
    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    QHash<QString, std::optional<WavSound>> sounds_;
    std::deque<WavSound> queue_;
    bool playing_ = false;
    bool quitting_ = false;
    std::thread worker_;
};
