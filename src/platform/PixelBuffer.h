#pragma once
// A BGRA picture in memory (B, G, R, A bytes, premultiplied alpha), shared by
// reference between the capture thread, the compositor and the main thread.
// Immutable once handed on: whoever fills it does so before passing it.
#include <QImage>
#include <cstdint>
#include <memory>

class PixelBuffer {
public:
    // Rows aligned to 64 bytes. Null when the size is not positive or memory runs out.
    static std::shared_ptr<PixelBuffer> create(int width, int height);

    int width() const { return width_; }
    int height() const { return height_; }
    int bytesPerRow() const { return bytesPerRow_; }
    uint8_t *data() { return data_.get(); }
    const uint8_t *data() const { return data_.get(); }
    int dataSize() const { return bytesPerRow_ * height_; }

    // A QImage over the same memory (Format_ARGB32_Premultiplied); valid while the
    // buffer lives.
    QImage image();
    QImage constImage() const;

private:
    PixelBuffer() = default;
    int width_ = 0;
    int height_ = 0;
    int bytesPerRow_ = 0;
    std::unique_ptr<uint8_t[]> data_;
};

using PixelBufferRef = std::shared_ptr<PixelBuffer>;
