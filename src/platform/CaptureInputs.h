#pragma once
// Ports: the screen and camera capture inputs, as the recording session drives them.
#include <QRectF>

class ScreenCaptureInput {
public:
    virtual ~ScreenCaptureInput() = default;
    // In the overlay's coordinates; an empty rectangle means the whole display.
    virtual void setCropRect(const QRectF &rect) = 0;
    virtual void startRunning() = 0;
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;
};

class CameraCaptureInput {
public:
    virtual ~CameraCaptureInput() = default;
    virtual void startRunning() = 0;
    virtual void stopRunning() = 0;
    virtual bool isRunning() const = 0;
};
