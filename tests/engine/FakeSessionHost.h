#pragma once
// The application controller as the session sees it, noting what it was told.
#include "RecordSessionHost.h"

#include <QStringList>
#include <atomic>
#include <mutex>

// The encoder opens its codecs beside the caller: tests that look at the library wait.
template <typename Manager> void startRecordingNow(Manager &manager)
{
    manager.startRecording();
    manager.encodeManager().waitUntilStarted();
}

class FakeSessionHost : public RecordSessionHost, public RecordOverlayWindow {
public:
    QStringList events;
    QString path = "/tmp/capstan-test/20260101_000000.mp4";
    bool audioAllowed = true;
    bool videoAllowed = true;
    bool captrue = false;
    uint32_t windowNumber = 0;
    QString windowName;
    bool overlayOpen = false;
    QString timeLabel, sizeLabel;
    float framesPerSecond = 25;
    qint64 quality = 0;
    qint64 split = 0;
    QList<QPair<QImage, bool>> cameraImages;
    qsizetype storedInputs = 0;
    qsizetype storedOutputs = 0;
    QSizeF voiceViewSize;
    std::atomic<bool> voiceViewLocked{false};
    QList<double> waveform;
    std::atomic<float> progress[3] = {-1.0f, -1.0f, -1.0f};
    float progressOf(LevelBar bar) const { return progress[int(bar)]; }

    FrameDecorations decorations() const
    {
        std::lock_guard lock(mutex);
        return frameDecorationsValue;
    }
    void setDecorations(const FrameDecorations &d)
    {
        std::lock_guard lock(mutex);
        frameDecorationsValue = d;
    }

    void setRecording(bool on) override { events << (on ? "recording:on" : "recording:off"); }
    QString outputPath() const override { return path; }
    bool checkCaptureAudio() override { return audioAllowed; }
    bool checkCapture(bool) override { return videoAllowed; }
    bool isCaptrue() const override { return captrue; }
    uint32_t selectedWindowNumber() const override { return windowNumber; }
    QString selectedWindowName() const override { return windowName; }
    void refreshStateMenuItem() override { events << "refreshStateMenuItem"; }
    void setTimeSetsBtnEnabled(bool on) override
    {
        events << (on ? "timeSets:on" : "timeSets:off");
    }
    RecordOverlayWindow *recordWC() override { return overlayOpen ? this : nullptr; }
    std::unique_ptr<RecordScreenWindowController>
    makeRecordScreenWindowController(const ScreenInfo &) override
    {
        return nullptr;
    }
    void setRecordCurrentTimeLabel(const QString &text) override { timeLabel = text; }
    void setRecordFileSizeLabel(const QString &text) override { sizeLabel = text; }
    QString systemFreeSpace() const override { return "12.50 G"; }

    float fps() const override { return framesPerSecond; }
    qint64 framItemIndex() const override { return quality; }
    qint64 splitType() const override { return split; }
    FrameDecorations frameDecorations() const override { return decorations(); }
    void showCameraImage(const QImage &image, bool recordingView) override
    {
        cameraImages.append({image, recordingView});
    }

    qsizetype inputDevicesCount() const override { return storedInputs; }
    qsizetype outputDevicesCount() const override { return storedOutputs; }
    void storeDeviceLists(const QList<EZAudioDevice> &in, const QList<EZAudioDevice> &out) override
    {
        storedInputs = in.size();
        storedOutputs = out.size();
        events << QStringLiteral("storeDeviceLists");
    }
    void recordScreenClicked() override { events << "recordScreenClicked"; }
    void showMicrophoneMissing() override { events << "alert:Alert_Mic_Message"; }
    void selectSystemAudioItem() override { events << "audioItem:1"; }
    QSizeF voiceContentViewSize() const override { return voiceViewSize; }
    bool voiceContentViewIsLocked() const override { return voiceViewLocked; }
    void appendWaveformValue(double value) override { waveform.append(value); }
    void updateSampleData() override { events << "updateSampleData"; }
    void setProgress(LevelBar bar, float value) override { progress[int(bar)] = value; }

    void removeRecordScreenView() override { events << "overlay:removeView"; }
    void orderOut() override { events << "overlay:orderOut"; }

private:
    mutable std::mutex mutex;
    FrameDecorations frameDecorationsValue;
};
