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
    // The picture's own memory, without a copy (Format_ARGB32_Premultiplied only, else
    // null); the buffer keeps the picture alive.
    static std::shared_ptr<PixelBuffer> wrap(const QImage &image);

    int width() const { return width_; }
    int height() const { return height_; }
    int bytesPerRow() const { return bytesPerRow_; }
    uint8_t *data() { return bits_; }
    const uint8_t *data() const { return bits_; }
    int dataSize() const { return bytesPerRow_ * height_; }

    // A QImage over the same memory (Format_ARGB32_Premultiplied); valid while the
    // buffer lives.
    QImage image();
    QImage constImage() const;

private:
    friend class PixelBufferPool;
    PixelBuffer() = default;
    static std::unique_ptr<PixelBuffer> allocate(int width, int height);
    int width_ = 0;
    int height_ = 0;
    int bytesPerRow_ = 0;
    uint8_t *bits_ = nullptr;
    std::unique_ptr<uint8_t[]> data_; // owned memory, or
    QImage image_;                    // a picture's
};

using PixelBufferRef = std::shared_ptr<PixelBuffer>;

// A QImage over the buffer's memory that keeps the buffer alive as long as the picture
// (or a copy of it) lives. Read-only: painting on it detaches into a copy.
QImage retainedImage(const PixelBufferRef &buffer);
// The same for a buffer not yet handed on: painting goes into the buffer itself.
QImage retainedWritableImage(const PixelBufferRef &buffer);

// Copies the 32-bit pixels of source into target row by row (their strides may differ),
// as many rows and columns as both have, without detaching target from its memory.
void copyPixelRows(const QImage &source, QImage &target);
