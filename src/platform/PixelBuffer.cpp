#include "PixelBuffer.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

std::unique_ptr<PixelBuffer> PixelBuffer::allocate(int width, int height)
{
    if (width <= 0 || height <= 0)
        return nullptr;
    const int64_t rowBytes = (int64_t(width) * 4 + 63) / 64 * 64;
    if (rowBytes * height > std::numeric_limits<int>::max())
        return nullptr;
    std::unique_ptr<PixelBuffer> buffer(new PixelBuffer);
    buffer->data_.reset(new (std::nothrow) uint8_t[size_t(rowBytes * height)]);
    if (!buffer->data_)
        return nullptr;
    buffer->bits_ = buffer->data_.get();
    buffer->width_ = width;
    buffer->height_ = height;
    buffer->bytesPerRow_ = int(rowBytes);
    return buffer;
}

std::shared_ptr<PixelBuffer> PixelBuffer::create(int width, int height)
{
    return allocate(width, height);
}

std::shared_ptr<PixelBuffer> PixelBuffer::wrap(const QImage &image)
{
    if (image.isNull() || image.format() != QImage::Format_ARGB32_Premultiplied)
        return nullptr;
    std::shared_ptr<PixelBuffer> buffer(new PixelBuffer);
    buffer->image_ = image;
    // Read-only access keeps the picture from detaching; the contract is that nobody
    // writes into a buffer once it has been handed on.
    buffer->bits_ = const_cast<uint8_t *>(buffer->image_.constBits());
    buffer->width_ = image.width();
    buffer->height_ = image.height();
    buffer->bytesPerRow_ = int(image.bytesPerLine());
    return buffer;
}

QImage PixelBuffer::image()
{
    return QImage(bits_, width_, height_, bytesPerRow_, QImage::Format_ARGB32_Premultiplied);
}

QImage PixelBuffer::constImage() const
{
    return QImage(static_cast<const uchar *>(bits_), width_, height_, bytesPerRow_,
                  QImage::Format_ARGB32_Premultiplied);
}

namespace {

void releaseKeeper(void *keeper)
{
    delete static_cast<PixelBufferRef *>(keeper);
}

} // namespace

QImage retainedImage(const PixelBufferRef &buffer)
{
    if (!buffer)
        return {};
    return QImage(static_cast<const uchar *>(buffer->data()), buffer->width(), buffer->height(),
                  buffer->bytesPerRow(), QImage::Format_ARGB32_Premultiplied, &releaseKeeper,
                  new PixelBufferRef(buffer));
}

QImage retainedWritableImage(const PixelBufferRef &buffer)
{
    if (!buffer)
        return {};
    return QImage(buffer->data(), buffer->width(), buffer->height(), buffer->bytesPerRow(),
                  QImage::Format_ARGB32_Premultiplied, &releaseKeeper, new PixelBufferRef(buffer));
}

void copyPixelRows(const QImage &source, QImage &target)
{
    const int rows = std::min(source.height(), target.height());
    const size_t rowBytes = size_t(std::min(source.width(), target.width())) * 4;
    for (int row = 0; row < rows; ++row)
        std::memcpy(target.scanLine(row), source.constScanLine(row), rowBytes);
}
