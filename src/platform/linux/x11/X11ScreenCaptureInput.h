#pragma once
// The screen capture input on X11: frames of a display (a RandR monitor), cropped,
// without the cursor, on the thread "ScreenOutputQueue" at a steady interval.
#include "CaptureInputs.h"
#include "ScreenCatalog.h"

#include <QRect>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

class X11ScreenCaptureInput final : public ScreenCaptureInput {
public:
    // The catalog resolves display numbers; it is read on the calling thread only.
    explicit X11ScreenCaptureInput(const ScreenCatalog &screens, bool forcePlainRequests = false);
    ~X11ScreenCaptureInput() override;

    void setDisplay(qint64 screenNumber) override;
    void setMinFrameDuration(double seconds) override;
    void setCropRect(const QRectF &rect) override;
    void setSampleCallback(SampleCallback callback) override;
    void setSessionEventCallback(SessionEventCallback callback) override;
    void startRunning() override;
    void stopRunning() override;
    bool isRunning() const override { return running_.load(); }

    // The rectangle of the X screen the frames show (for tests and logs).
    QRect captureArea() const;

private:
    void run();
    void post(CaptureSessionEvent event, const QString &error = {});

    const ScreenCatalog &screens_;
    const bool forcePlainRequests_;
    mutable std::mutex mutex_; // the settings below
    QRect display_;            // X root coordinates
    QRectF crop_;
    double interval_ = 1.0 / 30;
    SampleCallback sampleCallback_;
    SessionEventCallback eventCallback_;

    std::thread thread_;
    std::atomic<bool> running_{false};
    std::atomic<bool> stop_{false};
};
