#include "ScreenGrabber.h"

#include <cstring>
#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/shm.h>

namespace x11 {

ScreenGrabber::ScreenGrabber(const XcbConnection &connection, bool forcePlainRequests)
    : connection_(connection), root_(connection.rootGeometry())
{
    if (forcePlainRequests || !connection.isValid())
        return;
    // An SHM request to a server without the extension would close the connection.
    const xcb_query_extension_reply_t *extension =
        xcb_get_extension_data(connection.get(), &xcb_shm_id);
    if (!extension || !extension->present)
        return;
    auto version = reply(xcb_shm_query_version_reply(
        connection.get(), xcb_shm_query_version(connection.get()), nullptr));
    shmAvailable_ = version != nullptr;
}

ScreenGrabber::~ScreenGrabber()
{
    releaseSegment();
}

bool ScreenGrabber::ensureSegment(size_t bytes)
{
    if (shmData_ && shmSize_ >= bytes)
        return true;
    releaseSegment();
    shmId_ = shmget(IPC_PRIVATE, bytes, IPC_CREAT | 0600);
    if (shmId_ < 0)
        return false;
    void *address = shmat(shmId_, nullptr, 0);
    // Marked for removal at once: it goes when both sides have detached, even after a crash.
    shmctl(shmId_, IPC_RMID, nullptr);
    if (address == reinterpret_cast<void *>(-1)) {
        shmId_ = -1;
        return false;
    }
    shmData_ = static_cast<uint8_t *>(address);
    shmSize_ = bytes;
    segment_ = xcb_generate_id(connection_.get());
    auto error = reply(
        xcb_request_check(connection_.get(), xcb_shm_attach_checked(connection_.get(), segment_,
                                                                    uint32_t(shmId_), 0)));
    if (error) {
        releaseSegment();
        return false;
    }
    return true;
}

void ScreenGrabber::releaseSegment()
{
    if (!shmData_)
        return;
    if (segment_)
        xcb_shm_detach(connection_.get(), segment_);
    xcb_flush(connection_.get());
    shmdt(shmData_);
    shmData_ = nullptr;
    shmSize_ = 0;
    segment_ = 0;
    shmId_ = -1;
}

bool ScreenGrabber::grabShared(const QRect &rect, uint8_t *target, int targetStride)
{
    const size_t bytes = size_t(rect.width()) * rect.height() * 4;
    if (!ensureSegment(bytes))
        return false;
    auto answer = reply(xcb_shm_get_image_reply(
        connection_.get(),
        xcb_shm_get_image(connection_.get(), connection_.root(), int16_t(rect.x()),
                          int16_t(rect.y()), uint16_t(rect.width()), uint16_t(rect.height()), ~0u,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, segment_, 0),
        nullptr));
    if (!answer)
        return false;
    copyOpaque(shmData_, rect.width() * 4, target, targetStride, rect.width(), rect.height());
    return true;
}

bool ScreenGrabber::grabPlain(const QRect &rect, uint8_t *target, int targetStride)
{
    return connection_.imageInto(connection_.root(), rect, target, targetStride);
}

PixelBufferRef ScreenGrabber::grab(const QRect &rect)
{
    PixelBufferRef buffer = pool_.take(rect.width(), rect.height());
    if (!buffer)
        return nullptr;
    const QRect visible = rect & root_;
    if (visible != rect)
        buffer->image().fill(Qt::black); // what lies off the screen
    if (visible.isEmpty())
        return buffer;
    uint8_t *target = buffer->data() + size_t(visible.y() - rect.y()) * buffer->bytesPerRow() +
                      size_t(visible.x() - rect.x()) * 4;
    bool ok = shmAvailable_ && grabShared(visible, target, buffer->bytesPerRow());
    if (!ok)
        ok = grabPlain(visible, target, buffer->bytesPerRow());
    if (!ok)
        return nullptr;
    return buffer;
}

} // namespace x11
