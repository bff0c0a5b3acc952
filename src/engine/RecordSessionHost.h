#pragma once
// What the recording session asks of the application controller, and what it tells it.
// AppDelegate answers in the program; unit tests of the engine answer with a fake.
#include <QString>
#include <cstdint>

// The overlay window of a screen recording, as the session's stop closes it.
class RecordOverlayWindow {
public:
    virtual ~RecordOverlayWindow() = default;
    virtual void removeRecordScreenView() = 0;
    virtual void orderOut() = 0;
};

class RecordSessionHost {
public:
    virtual ~RecordSessionHost() = default;
    virtual void setRecording(bool recording) = 0;
    virtual QString outputPath() const = 0;
    virtual bool checkCaptureAudio() = 0;
    virtual bool checkCapture(bool showAlert) = 0;
    virtual bool isCaptrue() const = 0;
    virtual uint32_t selectedWindowNumber() const = 0;
    virtual QString selectedWindowName() const = 0;
    virtual void refreshStateMenuItem() = 0;
    virtual void setTimeSetsBtnEnabled(bool enabled) = 0;
    // Null while no overlay is open.
    virtual RecordOverlayWindow *recordWC() = 0;
    // Called on the main thread.
    virtual void setRecordCurrentTimeLabel(const QString &text) = 0;
    virtual void setRecordFileSizeLabel(const QString &text) = 0;
    virtual QString systemFreeSpace() const = 0;
};

// Receiver of the running time, in whole seconds recorded.
class TNRecordAudioManagerDelegate {
public:
    virtual ~TNRecordAudioManagerDelegate() = default;
    virtual void recordScreenTimeDuration(int32_t seconds) = 0;
};
