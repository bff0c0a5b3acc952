#pragma once
// Reads rectangles of the root window into BGRA buffers: through a shared memory
// segment when the server offers MIT-SHM, else with plain GetImage requests.
#include "PixelBuffer.h"
#include "PixelBufferPool.h"
#include "XcbConnection.h"

#include <QRect>

namespace x11 {

class ScreenGrabber {
public:
    // forcePlainRequests skips MIT-SHM (for tests of the fallback).
    explicit ScreenGrabber(const XcbConnection &connection, bool forcePlainRequests = false);
    ~ScreenGrabber();
    ScreenGrabber(const ScreenGrabber &) = delete;
    ScreenGrabber &operator=(const ScreenGrabber &) = delete;

    bool usesSharedMemory() const { return shmAvailable_; }
    // A buffer of rect's size; what lies outside the screen is black. Null on failure.
    PixelBufferRef grab(const QRect &rect);

private:
    bool ensureSegment(size_t bytes);
    void releaseSegment();
    bool grabShared(const QRect &rect, uint8_t *target, int targetStride);
    bool grabPlain(const QRect &rect, uint8_t *target, int targetStride);

    const XcbConnection &connection_;
    QRect root_;
    bool shmAvailable_ = false;
    uint32_t segment_ = 0; // xcb_shm_seg_t
    int shmId_ = -1;
    uint8_t *shmData_ = nullptr;
    size_t shmSize_ = 0;
    PixelBufferPool pool_;
};

} // namespace x11
