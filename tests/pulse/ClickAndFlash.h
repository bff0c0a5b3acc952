#pragma once
// A window that flashes and a click played at the same moment: where the recording shows
// the one and sounds the other tells how well sound and pictures keep together.
#include "MediaProbe.h"

#include <QByteArray>
#include <QPainter>
#include <QRasterWindow>
#include <QtEndian>
#include <cmath>
#include <vector>

namespace clickandflash {

constexpr int kRate = 44100;

class FlashWindow : public QRasterWindow {
public:
    void setLit(bool lit)
    {
        lit_ = lit;
        update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(0, 0, width(), height(), lit_ ? Qt::white : Qt::black);
    }

private:
    bool lit_ = false;
};

// 80 ms of a loud 1 kHz tone, stereo s16le.
inline QByteArray click()
{
    const int frames = kRate * 80 / 1000;
    QByteArray bytes(frames * 4, '\0');
    auto *out = reinterpret_cast<qint16 *>(bytes.data());
    for (int i = 0; i < frames; ++i) {
        const auto v = qint16(24000 * std::sin(2 * M_PI * 1000 * i / kRate));
        out[2 * i] = out[2 * i + 1] = qToLittleEndian(v);
    }
    return bytes;
}

// Seconds at which the pictures turn bright after being dark.
inline std::vector<double> flashes(const QString &path, int width, int height)
{
    const ProbedVideo video = MediaProbe::probeVideo(path);
    const std::vector<QByteArray> frames = MediaProbe::greyFrames(path, width, height);
    std::vector<double> onsets;
    bool lit = false;
    for (size_t i = 0; i < frames.size() && i < size_t(video.frameTimes.size()); ++i) {
        const uchar centre = uchar(frames[i].at((height / 2) * width + width / 2));
        if (!lit && centre > 160)
            onsets.push_back(video.frameTimes[qsizetype(i)]);
        lit = centre > 96;
    }
    return onsets;
}

// Seconds at which sound turns loud after a quiet stretch, counted from `from`.
inline std::vector<double> clickOnsets(const std::vector<float> &samples, int sampleRate,
                                       double from = 0)
{
    std::vector<double> onsets;
    size_t lastLoud = 0;
    bool any = false;
    for (size_t i = 0; i < samples.size(); ++i) {
        if (std::fabs(samples[i]) < 0.2f)
            continue;
        if (!any || i - lastLoud > size_t(sampleRate) / 5)
            onsets.push_back(from + double(i) / sampleRate);
        lastLoud = i;
        any = true;
    }
    return onsets;
}

inline std::vector<double> clicks(const QString &path, int sampleRate)
{
    return clickOnsets(MediaProbe::monoSamples(path), sampleRate);
}

} // namespace clickandflash
