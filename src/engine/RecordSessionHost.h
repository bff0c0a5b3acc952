#pragma once
// What the recording session asks of the application controller, and what it tells it.
// AppDelegate answers in the program; unit tests of the engine answer with a fake.
#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>
#include <cstdint>

// The overlay window of a screen recording, as the session's stop closes it.
class RecordOverlayWindow {
public:
    virtual ~RecordOverlayWindow() = default;
    virtual void removeRecordScreenView() = 0;
    virtual void orderOut() = 0;
};

// How a text watermark looks: an empty font name stands for the system font.
struct TextWatermarkStyle {
    QString fontName;
    double pointSize = 20;
    QColor color = Qt::red;
    float alpha = 1;
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

    // Frames per second chosen for recordings ("25 fps" gives 25).
    virtual float fps() const = 0;
    virtual qint64 framItemIndex() const = 0;
    // Safe to call from the capture threads.
    virtual FrameDecorations frameDecorations() const = 0;
    // A camera picture for the floating camera window, or (recordingView) for the main
    // window's camera view; called on the main thread.
    virtual void showCameraImage(const QImage &image, bool recordingView) = 0;
};

// Receiver of the running time, in whole seconds recorded.
class TNRecordAudioManagerDelegate {
public:
    virtual ~TNRecordAudioManagerDelegate() = default;
    virtual void recordScreenTimeDuration(int32_t seconds) = 0;
};
