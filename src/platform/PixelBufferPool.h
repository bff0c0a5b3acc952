#pragma once
// A few pictures of one size, taken back when their last user lets go, so a steady stream
// of frames reuses memory instead of allocating (and page-faulting in) 8 MB a frame.
// take() and the release may happen on any threads; the pool may die before its buffers.
#include "PixelBuffer.h"

#include <mutex>
#include <vector>

class PixelBufferPool {
public:
    explicit PixelBufferPool(size_t kept = 3) : shelf_(std::make_shared<Shelf>(kept)) {}

    // A buffer of the size with unspecified content; null when the size is not positive
    // or memory runs out.
    PixelBufferRef take(int width, int height);
    // How many buffers wait to be reused.
    size_t idleCount() const;

private:
    struct Shelf {
        explicit Shelf(size_t kept) : kept(kept) {}
        const size_t kept;
        mutable std::mutex mutex;
        std::vector<std::unique_ptr<PixelBuffer>> idle;
    };
    std::shared_ptr<Shelf> shelf_;
};
