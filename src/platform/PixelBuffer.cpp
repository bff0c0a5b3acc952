#include "PixelBuffer.h"

#include <limits>
#include <new>

std::shared_ptr<PixelBuffer> PixelBuffer::create(int width, int height)
{
    if (width <= 0 || height <= 0)
        return nullptr;
    const int64_t rowBytes = (int64_t(width) * 4 + 63) / 64 * 64;
    if (rowBytes * height > std::numeric_limits<int>::max())
        return nullptr;
    std::shared_ptr<PixelBuffer> buffer(new PixelBuffer);
    buffer->data_.reset(new (std::nothrow) uint8_t[size_t(rowBytes * height)]);
    if (!buffer->data_)
        return nullptr;
    buffer->width_ = width;
    buffer->height_ = height;
    buffer->bytesPerRow_ = int(rowBytes);
    return buffer;
}

QImage PixelBuffer::image()
{
    return QImage(data_.get(), width_, height_, bytesPerRow_, QImage::Format_ARGB32_Premultiplied);
}

QImage PixelBuffer::constImage() const
{
    return QImage(static_cast<const uchar *>(data_.get()), width_, height_, bytesPerRow_,
                  QImage::Format_ARGB32_Premultiplied);
}
