#include "PixelBufferPool.h"

PixelBufferRef PixelBufferPool::take(int width, int height)
{
    std::unique_ptr<PixelBuffer> buffer;
    {
        std::lock_guard lock(shelf_->mutex);
        auto &idle = shelf_->idle;
        // Buffers of another size are from before a change of size: let them go.
        std::erase_if(idle, [&](const std::unique_ptr<PixelBuffer> &b) {
            return b->width() != width || b->height() != height;
        });
        if (!idle.empty()) {
            buffer = std::move(idle.back());
            idle.pop_back();
        }
    }
    if (!buffer)
        buffer = PixelBuffer::allocate(width, height);
    if (!buffer)
        return nullptr;
    std::weak_ptr<Shelf> home = shelf_;
    return PixelBufferRef(buffer.release(), [home](PixelBuffer *released) {
        std::unique_ptr<PixelBuffer> owned(released);
        if (const std::shared_ptr<Shelf> shelf = home.lock()) {
            std::lock_guard lock(shelf->mutex);
            if (shelf->idle.size() < shelf->kept)
                shelf->idle.push_back(std::move(owned));
        }
    });
}

size_t PixelBufferPool::idleCount() const
{
    std::lock_guard lock(shelf_->mutex);
    return shelf_->idle.size();
}
