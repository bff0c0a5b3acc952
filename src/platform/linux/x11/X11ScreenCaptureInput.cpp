#include "X11ScreenCaptureInput.h"

#include "Log.h"
#include "ScreenGeometry.h"
#include "ScreenGrabber.h"

#include <chrono>
#include <cmath>
#include <future>
#include <pthread.h>

using Clock = std::chrono::steady_clock;

X11ScreenCaptureInput::X11ScreenCaptureInput(const ScreenCatalog &screens, bool forcePlainRequests)
    : screens_(screens), forcePlainRequests_(forcePlainRequests)
{}

X11ScreenCaptureInput::~X11ScreenCaptureInput()
{
    stopRunning();
}

void X11ScreenCaptureInput::setDisplay(qint64 screenNumber)
{
    const std::optional<ScreenInfo> primary = screens_.mainScreen();
    QRectF frame;
    for (const ScreenInfo &screen : screens_.screens())
        if (screen.number == screenNumber)
            frame = screen.frame;
    if (frame.isEmpty() && primary)
        frame = primary->frame;
    const QRectF primaryRoot = x11::XcbConnection().primaryMonitor();
    std::lock_guard lock(mutex_);
    display_ = ScreenGeometry::screenToRoot(frame, primaryRoot).toAlignedRect();
}

void X11ScreenCaptureInput::setMinFrameDuration(double seconds)
{
    std::lock_guard lock(mutex_);
    interval_ = seconds > 0 ? seconds : 1.0 / 30;
}

void X11ScreenCaptureInput::setCropRect(const QRectF &rect)
{
    std::lock_guard lock(mutex_);
    crop_ = rect;
}

void X11ScreenCaptureInput::setSampleCallback(SampleCallback callback)
{
    std::lock_guard lock(mutex_);
    sampleCallback_ = std::move(callback);
}

void X11ScreenCaptureInput::setSessionEventCallback(SessionEventCallback callback)
{
    std::lock_guard lock(mutex_);
    eventCallback_ = std::move(callback);
}

QRect X11ScreenCaptureInput::captureArea() const
{
    std::lock_guard lock(mutex_);
    if (crop_.isEmpty())
        return display_;
    // The crop counts from the display's lower left, y up; X counts from the top.
    const QRectF flipped(display_.x() + crop_.x(),
                         display_.y() + display_.height() - crop_.y() - crop_.height(),
                         crop_.width(), crop_.height());
    return QRect(int(std::floor(flipped.x())), int(std::floor(flipped.y())), int(flipped.width()),
                 int(flipped.height()));
}

void X11ScreenCaptureInput::post(CaptureSessionEvent event, const QString &error)
{
    SessionEventCallback callback;
    {
        std::lock_guard lock(mutex_);
        callback = eventCallback_;
    }
    if (callback)
        callback(event, error);
}

void X11ScreenCaptureInput::startRunning()
{
    if (running_)
        return;
    stop_ = false;
    std::promise<void> started;
    std::future<void> ready = started.get_future();
    thread_ = std::thread([this, &started] {
        pthread_setname_np(pthread_self(), "ScreenOutputQueue");
        running_ = true;
        started.set_value();
        run();
    });
    ready.wait();
    post(CaptureSessionEvent::DidStartRunning);
}

void X11ScreenCaptureInput::stopRunning()
{
    if (!thread_.joinable())
        return;
    stop_ = true;
    thread_.join();
    running_ = false;
    post(CaptureSessionEvent::DidStopRunning);
}

void X11ScreenCaptureInput::run()
{
    x11::XcbConnection connection;
    if (!connection.isValid()) {
        post(CaptureSessionEvent::RuntimeError, QStringLiteral("cannot open the X display"));
        return;
    }
    x11::ScreenGrabber grabber(connection, forcePlainRequests_);
    const Clock::time_point start = Clock::now();
    long long slot = 0;
    bool reported = false;
    while (!stop_) {
        double interval;
        SampleCallback callback;
        {
            std::lock_guard lock(mutex_);
            interval = interval_;
            callback = sampleCallback_;
        }
        // Deadlines on a fixed grid: a late frame never shifts the ones after it, and
        // missed slots are skipped rather than caught up in a burst.
        const auto period = std::chrono::duration<double>(interval);
        auto deadline = start + std::chrono::duration_cast<Clock::duration>(period * double(slot));
        const Clock::time_point now = Clock::now();
        if (deadline < now - std::chrono::duration_cast<Clock::duration>(period)) {
            slot = (long long)((now - start) / period);
            deadline = start + std::chrono::duration_cast<Clock::duration>(period * double(slot));
        }
        std::this_thread::sleep_until(deadline);
        ++slot;
        if (stop_)
            break;
        const PixelBufferRef frame = grabber.grab(captureArea());
        if (!frame) {
            if (!connection.isValid()) {
                post(CaptureSessionEvent::RuntimeError, QStringLiteral("the X display is gone"));
                break;
            }
            if (!reported)
                capstan::NSLog(lcPlatform, "screen capture: the server refused a frame");
            reported = true;
            continue;
        }
        if (callback)
            callback(frame);
    }
}
