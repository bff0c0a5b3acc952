#include "PulseSoundPlayer.h"

#include "Log.h"

#include <QFile>
#include <QtEndian>
#include <pulse/error.h>
#include <pulse/simple.h>

using capstan::NSLog;

std::optional<WavSound> parseWav(const QByteArray &file)
{
    if (file.size() < 12 || !file.startsWith("RIFF") || file.mid(8, 4) != "WAVE")
        return std::nullopt;
    WavSound sound;
    int bits = 0;
    bool hasFormat = false;
    for (qsizetype at = 12; at + 8 <= file.size();) {
        const QByteArray id = file.mid(at, 4);
        const quint32 size = qFromLittleEndian<quint32>(file.constData() + at + 4);
        const qsizetype body = at + 8;
        if (size > quint32(file.size() - body))
            return std::nullopt;
        if (id == "fmt " && size >= 16) {
            const char *f = file.constData() + body;
            const auto format = qFromLittleEndian<quint16>(f);
            sound.channels = qFromLittleEndian<quint16>(f + 2);
            sound.rate = int(qFromLittleEndian<quint32>(f + 4));
            bits = qFromLittleEndian<quint16>(f + 14);
            hasFormat = format == 1; // PCM
        } else if (id == "data") {
            sound.samples = file.mid(body, qsizetype(size));
        }
        at = body + qsizetype(size) + (size & 1); // chunks are padded to even sizes
    }
    if (!hasFormat || bits != 16 || sound.channels < 1 || sound.channels > 8 || sound.rate <= 0 ||
        sound.samples.isEmpty())
        return std::nullopt;
    return sound;
}

PulseSoundPlayer::PulseSoundPlayer() : worker_([this] { run(); }) {}

PulseSoundPlayer::~PulseSoundPlayer()
{
    {
        std::lock_guard lock(mutex_);
        quitting_ = true;
        queue_.clear();
    }
    changed_.notify_all();
    worker_.join();
}

const WavSound *PulseSoundPlayer::sound(const QString &name)
{
    auto it = sounds_.find(name);
    if (it == sounds_.end()) {
        QFile file(QStringLiteral(":/sounds/%1.wav").arg(name));
        std::optional<WavSound> loaded;
        if (file.open(QIODevice::ReadOnly))
            loaded = parseWav(file.readAll());
        if (!loaded)
            NSLog(lcPlatform, "no sound \"%s\" to play", qUtf8Printable(name));
        it = sounds_.insert(name, std::move(loaded));
    }
    return it->has_value() ? &**it : nullptr;
}

bool PulseSoundPlayer::prepareToPlay(const QString &name)
{
    std::lock_guard lock(mutex_);
    return sound(name) != nullptr;
}

bool PulseSoundPlayer::play(const QString &name)
{
    {
        std::lock_guard lock(mutex_);
        const WavSound *wav = sound(name);
        if (!wav)
            return false;
        queue_.push_back(*wav);
    }
    changed_.notify_all();
    return true;
}

void PulseSoundPlayer::waitUntilPlayed()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return queue_.empty() && !playing_; });
}

void PulseSoundPlayer::run()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return quitting_ || !queue_.empty(); });
        if (quitting_)
            return;
        const WavSound wav = std::move(queue_.front());
        queue_.pop_front();
        playing_ = true;
        lock.unlock();

        pa_sample_spec spec{PA_SAMPLE_S16LE, uint32_t(wav.rate), uint8_t(wav.channels)};
        int error = 0;
        // A stream of its own per sound: a server that went away since is found again.
        pa_simple *stream = pa_simple_new(nullptr, "Capstan", PA_STREAM_PLAYBACK, nullptr,
                                          "sound effect", &spec, nullptr, nullptr, &error);
        if (!stream) {
            NSLog(lcPlatform, "sound not played: %s", pa_strerror(error));
        } else {
            if (pa_simple_write(stream, wav.samples.constData(), size_t(wav.samples.size()),
                                &error) < 0 ||
                pa_simple_drain(stream, &error) < 0)
                NSLog(lcPlatform, "sound not played: %s", pa_strerror(error));
            pa_simple_free(stream);
        }

        lock.lock();
        playing_ = false;
        changed_.notify_all();
    }
}
