#pragma once
// Ports: the screen, camera and sound capture inputs. The picture inputs deliver BGRA
// frames on their own serial thread ("ScreenOutputQueue", "VideoOutputQueue"), the sound
// input buffers of samples on "AudioDataOutputQueue", to the sample callback,
// and posts session events from whichever thread notices them.
#include "AudioSampleBuffer.h"
#include "PixelBuffer.h"

#include <QRectF>
#include <QString>
#include <functional>

enum class CaptureSessionEvent { DidStartRunning, DidStopRunning, RuntimeError };

using SampleCallback = std::function<void(const PixelBufferRef &frame)>;
// For RuntimeError, error holds the session's error text (the error key's value).
using SessionEventCallback = std::function<void(CaptureSessionEvent event, const QString &error)>;

class ScreenCaptureInput {
public:
    virtual ~ScreenCaptureInput() = default;
    // The display by its screen number ("NSScreenNumber").
    virtual void setDisplay(qint64 screenNumber) = 0;
    // Frames come no more often than this.
    virtual void setMinFrameDuration(double seconds) = 0;
    // In points of the display, origin at its lower left, y up; an empty rectangle
    // means the whole display. Frames have the rectangle's size (in pixels).
    virtual void setCropRect(const QRectF &rect) = 0;
    virtual void setSampleCallback(SampleCallback callback) = 0;
    virtual void setSessionEventCallback(SessionEventCallback callback) = 0;
    // Blocks until the session runs (or failed to); the cursor is never in the frames.
    virtual void startRunning() = 0;
    // Blocks until no callback runs any more.
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;
};

class CameraCaptureInput {
public:
    virtual ~CameraCaptureInput() = default;
    // Device names, the default first.
    virtual QStringList devices() const = 0;
    // An empty name picks the default device.
    virtual void setDevice(const QString &name) = 0;
    virtual void setSampleCallback(SampleCallback callback) = 0;
    virtual void setSessionEventCallback(SessionEventCallback callback) = 0;
    virtual void startRunning() = 0;
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;
};

using AudioSampleCallback = std::function<void(const AudioSampleBuffer &buffer)>;

// Sound from one capture device: 32-bit signed samples, planar, at the format asked for.
class AudioCaptureInput {
public:
    virtual ~AudioCaptureInput() = default;
    // The capture devices' display names; they match the hardware layer's device names.
    virtual QStringList devices() const = 0;
    virtual QString defaultDevice() const = 0;
    // False when the device cannot be opened.
    virtual bool setDevice(const QString &name) = 0;
    virtual void setFormat(int sampleRate, int channels) = 0;
    virtual void setSampleCallback(AudioSampleCallback callback) = 0;
    virtual void setSessionEventCallback(SessionEventCallback callback) = 0;
    virtual void startRunning() = 0;
    // Blocks until no callback runs any more.
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;
};
