#include "SKVoiceWaveView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QScreen>
#include <QTest>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace {

const QColor kContainerColour(0, 0, 0);

struct WaveOnContainer {
    QWidget container;
    SKVoiceWaveView *view;

    explicit WaveOnContainer(int width = 100)
    {
        container.resize(width + 20, 100);
        container.setAutoFillBackground(true);
        QPalette colours = container.palette();
        colours.setColor(QPalette::Window, kContainerColour);
        container.setPalette(colours);
        view = new SKVoiceWaveView(QRect(0, 0, width, 68), &container);
    }
};

// Notes whether the lock ever failed to hold while drawing.
class WatchedWaveView : public SKVoiceWaveView {
public:
    using SKVoiceWaveView::SKVoiceWaveView;
    bool sawUnlocked = false;
    std::atomic<int> draws{0};

protected:
    void drawRect(QPainter &painter, const QRectF &rect) override
    {
        sawUnlocked = sawUnlocked || !islock();
        ++draws;
        SKVoiceWaveView::drawRect(painter, rect);
    }
};

} // namespace

TEST(SKVoiceWaveView, StartsAtTheFloorAndKeepsTheCountBoundedByTheWidth)
{
    WaveOnContainer wave(100);
    const QList<VoiceStroke> columns = wave.view->pointArray();
    ASSERT_EQ(columns.size(), 101);
    EXPECT_FLOAT_EQ(columns[50].point_y, 0.5f);
    for (int i = 0; i < 1000; ++i)
        wave.view->appendWaveformValue(1.0 + i % 30, i % 2 == 0);
    EXPECT_EQ(wave.view->pointArray().size(), 101);
    // The scrolled-out columns stay near the same length.
    EXPECT_EQ(wave.view->tempPointArray().size(), 101);
}

TEST(SKVoiceWaveView, NewSoundEntersOnePointFromTheRightEdge)
{
    WaveOnContainer wave(10);
    wave.view->appendWaveformValue(7.0, false);
    wave.view->appendWaveformValue(9.0, true);
    const QList<VoiceStroke> columns = wave.view->pointArray();
    ASSERT_EQ(columns.size(), 11);
    EXPECT_FLOAT_EQ(columns[10].point_y, 0.5f);
    EXPECT_FLOAT_EQ(columns[9].point_y, 9.0f);
    EXPECT_TRUE(columns[9].isRecording);
    EXPECT_FLOAT_EQ(columns[8].point_y, 7.0f);
    EXPECT_FALSE(columns[8].isRecording);
    EXPECT_EQ(wave.view->tempPointArray().size(), 2);
}

TEST(SKVoiceWaveView, IdleColumnsAreWhiteAndRecordedOnesGreen)
{
    WaveOnContainer wave(20);
    // 21 columns: after 20 feeds, columns 0 to 9 idle, 10 to 19 recorded, 20 the first floor.
    for (int i = 0; i < 20; ++i)
        wave.view->appendWaveformValue(12.0, i >= 10);
    const QImage picture = wave.container.grab().toImage();
    const int centre = 34;
    EXPECT_EQ(picture.pixelColor(5, centre), SKVoiceWaveView::idleColor());
    EXPECT_EQ(picture.pixelColor(5, centre - 8), SKVoiceWaveView::idleColor());
    EXPECT_EQ(picture.pixelColor(15, centre + 8), SKVoiceWaveView::recordingColor());
    // Outside the band of half height 12 the container shows.
    EXPECT_EQ(picture.pixelColor(5, centre - 20), kContainerColour);
    EXPECT_EQ(picture.pixelColor(15, centre + 20), kContainerColour);
}

TEST(SKVoiceWaveView, LockHoldsWhilePaintingOnly)
{
    QWidget container;
    container.resize(120, 100);
    auto *view = new WatchedWaveView(QRect(0, 0, 100, 68), &container);
    EXPECT_FALSE(view->islock());
    container.grab();
    ASSERT_GT(view->draws, 0);
    EXPECT_FALSE(view->sawUnlocked);
    EXPECT_FALSE(view->islock());
}

TEST(SKVoiceWaveView, RepaintsAtMostOncePerFrameOfTheScreen)
{
    QWidget container;
    container.resize(120, 100);
    auto *view = new WatchedWaveView(QRect(0, 0, 100, 68), &container);
    container.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&container));
    QTest::qWait(50);
    view->draws = 0;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < 200; ++i) {
        view->appendWaveformValue(5.0, false);
        view->updateSampleData();
        QApplication::processEvents();
    }
    const qreal frameMs = 1000.0 / container.screen()->refreshRate();
    EXPECT_GE(view->draws, 1);
    EXPECT_LE(view->draws, 2 + int(clock.elapsed() / frameMs));
}

TEST(SKVoiceWaveViewThreads, FeedingFromTheAudioThreadWhilePainting)
{
    QWidget container;
    container.resize(420, 100);
    auto *view = new WatchedWaveView(QRect(0, 0, 400, 68), &container);
    container.show();
    // On a real display a window paints only once it is exposed.
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&container));
    std::atomic<bool> stop{false};
    std::atomic<int> fed{0};
    std::thread audio([&] {
        for (int i = 0; !stop; ++i) {
            // As the meter does: a buffer that meets the lock is dropped.
            if (view->islock())
                continue;
            view->appendWaveformValue(0.5 + i % 34, i % 3 == 0);
            view->updateSampleData();
            ++fed;
        }
    });
    // Paint until the feeding has overlapped a good number of paints.
    for (int paints = 0; paints < 100 || fed < 1000; ++paints) {
        view->repaint();
        QApplication::processEvents();
    }
    stop = true;
    audio.join();
    QApplication::processEvents();
    EXPECT_EQ(view->pointArray().size(), 401);
    EXPECT_GE(view->draws, 100);
    EXPECT_FALSE(view->sawUnlocked);
    EXPECT_FALSE(view->islock());
}
