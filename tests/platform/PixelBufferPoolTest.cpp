// Frame memory that is reused: what comes back is handed out again, a new size lets the old
// buffers go, buffers may outlive their pool and be released on any thread; and a picture
// handed on as a buffer keeps its memory alive.
#include "PixelBufferPool.h"

#include <gtest/gtest.h>
#include <thread>
#include <vector>

namespace {

TEST(PixelBufferPoolTest, ReleasedBuffersAreReusedUpToTheLimitAndDroppedOnANewSize)
{
    PixelBufferPool pool(2);
    std::vector<PixelBufferRef> taken;
    for (int i = 0; i < 3; ++i)
        taken.push_back(pool.take(64, 32));
    const uint8_t *first = taken[0]->data();
    const uint8_t *second = taken[1]->data();
    EXPECT_EQ(taken[0]->width(), 64);
    EXPECT_GE(taken[0]->bytesPerRow(), 64 * 4);
    for (PixelBufferRef &b : taken)
        b.reset();
    EXPECT_EQ(pool.idleCount(), 2u); // the third is freed

    const PixelBufferRef again = pool.take(64, 32);
    EXPECT_TRUE(again->data() == first || again->data() == second);
    EXPECT_EQ(pool.idleCount(), 1u);

    const PixelBufferRef other = pool.take(20, 10);
    EXPECT_EQ(other->width(), 20);
    EXPECT_EQ(other->height(), 10);
    EXPECT_EQ(pool.idleCount(), 0u);
    EXPECT_EQ(pool.take(0, 10), nullptr);
}

TEST(PixelBufferPoolTest, BuffersOutliveThePoolAndComeBackFromOtherThreads)
{
    PixelBufferRef survivor;
    {
        PixelBufferPool pool(4);
        survivor = pool.take(8, 8);
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&pool] {
                for (int i = 0; i < 200; ++i) {
                    PixelBufferRef b = pool.take(16, 16);
                    ASSERT_TRUE(b);
                    b->data()[0] = uint8_t(i);
                }
            });
        for (std::thread &t : threads)
            t.join();
        EXPECT_LE(pool.idleCount(), 4u);
    }
    survivor->data()[0] = 1; // still valid memory; freed, not shelved, when let go
    survivor.reset();
}

TEST(PixelBufferPoolTest, AWrappedPictureIsSharedNotCopiedAndStaysAlive)
{
    PixelBufferRef wrapped;
    const uchar *bits = nullptr;
    {
        QImage picture(30, 20, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::red);
        bits = picture.constBits();
        wrapped = PixelBuffer::wrap(picture);
    }
    ASSERT_TRUE(wrapped);
    EXPECT_EQ(wrapped->data(), bits);
    EXPECT_EQ(wrapped->constImage().pixelColor(29, 19), QColor(Qt::red));
    EXPECT_EQ(PixelBuffer::wrap(QImage(4, 4, QImage::Format_RGB888)), nullptr);

    // A picture over a pooled buffer paints into it and holds it until the picture dies.
    PixelBufferPool pool(1);
    QImage canvas = retainedWritableImage(pool.take(10, 10));
    canvas.fill(Qt::blue);
    const QImage view = canvas;
    canvas = QImage();
    EXPECT_EQ(pool.idleCount(), 0u);
    EXPECT_EQ(view.pixelColor(5, 5), QColor(Qt::blue));
}

} // namespace
