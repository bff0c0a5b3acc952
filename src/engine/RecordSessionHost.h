#pragma once
// What the recording session asks of the application controller, and what it tells it.
// AppDelegate answers in the program; unit tests of the engine answer with a fake.
#include "EZAudioDevice.h"

#include <QColor>
#include <QImage>
#include <QList>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

struct ScreenInfo;

// The overlay window of a screen recording, as the session's stop closes it.
class RecordOverlayWindow {
public:
    virtual ~RecordOverlayWindow() = default;
    virtual void removeRecordScreenView() = 0;
    virtual void orderOut() = 0;
};

// One screen's overlay before and during a screen recording. The host makes them; the
// session keeps them, one per screen, in the order of the screens.
class RecordScreenWindowController : public RecordOverlayWindow {
public:
    virtual const ScreenInfo &screen() const = 0;
    // Covers the screen; for a whole-screen recording goes on by itself to the start.
    virtual void startRecorderScreen() = 0;
    // Closes the window and forgets the session.
    virtual void cleanup() = 0;
    // Brings the overlay's window to the front with the keyboard.
    virtual void makeKeyAndOrderFront() {}
    // Escape and Return no longer reach the overlay.
    virtual void removeEventMonitor() {}
};

// How a text watermark looks: an empty font name stands for the system font.
struct TextWatermarkStyle {
    QString fontName;
    double pointSize = 20;
    QColor color = Qt::red;
    float alpha = 1;
};

// Where the watermark sits: its centre as fractions of the frame's width and height (0
// places a text in the lower left corner), and its scale at a 1920-pixel-wide frame.
struct WatermarkPlacement {
    float centerX = 0;
    float centerY = 0;
    float scale = 1;
};

// What the compositor stamps on every frame; a consistent copy is taken per frame.
struct FrameDecorations {
    bool isMouseHight = false;
    bool isMouseClickEffect = false;
    bool isShowMouse = false;
    bool isTimeTextWatermark = false;
    QStringList timeFramStyles;
    qint64 timeFramStyleIndex = 0;
    quint64 watermarkType = 2;
    QImage watermarkImage;
    TextWatermarkStyle textStyle;
    WatermarkPlacement placement;
};

// The level bars: the main window's, and the two of camera mode.
enum class LevelBar { Main, System, Micphone };

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
    // A new overlay for the screen; null where the host shows none.
    virtual std::unique_ptr<RecordScreenWindowController>
    makeRecordScreenWindowController(const ScreenInfo &screen) = 0;
    // Called on the main thread.
    virtual void setRecordCurrentTimeLabel(const QString &text) = 0;
    virtual void setRecordFileSizeLabel(const QString &text) = 0;
    virtual QString systemFreeSpace() const = 0;

    // Frames per second chosen for recordings ("25 fps" gives 25).
    virtual float fps() const = 0;
    virtual qint64 framItemIndex() const = 0;
    // The split rule at the moment a recording starts: 1 by time, 2 by size, else none.
    virtual qint64 splitType() const = 0;
    // Safe to call from the capture threads.
    virtual FrameDecorations frameDecorations() const = 0;
    // A camera picture for the floating camera window, or (recordingView) for the main
    // window's camera view; called on the main thread.
    virtual void showCameraImage(const QImage &image, bool recordingView) = 0;

    // Sound devices as last stored: the base of the device watch's comparison.
    virtual qsizetype inputDevicesCount() const = 0;
    virtual qsizetype outputDevicesCount() const = 0;
    virtual void storeDeviceLists(const QList<EZAudioDevice> &inputs,
                                  const QList<EZAudioDevice> &outputs) = 0;
    // A vanished microphone: the running recording is stopped and the user told; the
    // sound choice shows system sound again.
    virtual void recordScreenClicked() = 0;
    virtual void showMicrophoneMissing() = 0;
    virtual void selectSystemAudioItem() = 0;

    // The level views. Size and lock are read and values fed from the audio thread;
    // updateSampleData runs on the main thread; setProgress from any thread.
    virtual QSizeF voiceContentViewSize() const = 0;
    virtual bool voiceContentViewIsLocked() const = 0;
    virtual void appendWaveformValue(double value) = 0;
    virtual void updateSampleData() = 0;
    virtual void setProgress(LevelBar bar, float value) = 0;
};

// Receiver of the running time, in whole seconds recorded.
class TNRecordAudioManagerDelegate {
public:
    virtual ~TNRecordAudioManagerDelegate() = default;
    virtual void recordScreenTimeDuration(int32_t seconds) = 0;
};
