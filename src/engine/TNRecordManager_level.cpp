// The level meter: the peak of one buffer, scaled to the waveform view's half height,
// floored at 0.5 and divided by 34 (half of the view's 68 points) for the bars.
#include "TNRecordManager.h"

#include "SKVoiceFilter.h"

#include <QMetaObject>
#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double kFloor = 0.5;
constexpr float kHalfViewHeight = 34.0f;

} // namespace

void TNRecordManager::audioVolum(const AudioSampleBuffer &sampleBuffer)
{
    const QSizeF initialFrame = host_.voiceContentViewSize();
    QList<double> samples = SKVoiceFilter().filteredSamplesForSize(initialFrame, sampleBuffer.data);
    if (host_.voiceContentViewIsLocked())
        return;
    double value = 0;
    for (double sample : samples)
        value = std::max(value, sample);
    if (std::isnan(value))
        value = kFloor;
    value = std::max(value, kFloor);
    samples.clear();
    const float level = float(value / kHalfViewHeight);
    volum_ = level;
    showLevel(level, value);
}

void TNRecordManager::showLevel(float level, double waveformValue)
{
    switch (recordVideoType()) {
    case VideoTypeAudioOnly:
        host_.appendWaveformValue(waveformValue);
        QMetaObject::invokeMethod(
            this,
            [this, level] {
                host_.updateSampleData();
                host_.setProgress(LevelBar::Main, level);
            },
            Qt::QueuedConnection);
        return;
    case VideoTypeCamera: {
        // The joined stream of system sound and microphone has one level for both bars.
        const quint64 type = recordAudioType();
        const bool system = type == AudioTypeSystem || type == AudioTypeSystemAndMicphone;
        const bool micphone = type == AudioTypeMicphone || type == AudioTypeSystemAndMicphone;
        host_.setProgress(LevelBar::System, system ? level : 0.0f);
        host_.setProgress(LevelBar::Micphone, micphone ? level : 0.0f);
        return;
    }
    default:
        host_.setProgress(LevelBar::Main, level);
    }
}

bool TNRecordManager::isQuite(const QByteArray &data)
{
    if (data.isEmpty())
        return false;
    const qsizetype samples = data.size() / 2;
    int64_t sum = 0;
    for (qsizetype i = 0; i < samples; ++i) {
        int16_t sample;
        std::memcpy(&sample, data.constData() + i * 2, sizeof(sample));
        sum += int64_t(sample) * sample;
    }
    // Divided by the length in bytes, not the sample count, as the level always was.
    float level = float(0.5 * (10.0 * std::log10(double(sum) / double(data.size())) - 81.0));
    if (std::isnan(level) || level > 1.0f || level < 0.0f)
        level = recordAudioType() == AudioTypeNone ? 0.0f : 0.5f;
    volum_ = level;
    if (recordVideoType() == VideoTypeCamera)
        showLevel(level, level);
    else
        host_.setProgress(LevelBar::Main, level);
    return true;
}
