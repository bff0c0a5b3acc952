// The frame path against fake capture inputs, a fake clock and the recording fake of
// the encoder library: which samples are pushed, with which timestamps, and when.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "LogCapture.h"
#include "RecordingMediaEncoder.h"
#include "TNRecordManager.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

namespace RME = RecordingMediaEncoder;

namespace {

class DurationReceiver : public TNRecordAudioManagerDelegate {
public:
    void recordScreenTimeDuration(int32_t seconds) override { reports.append(seconds); }
    QList<int32_t> reports;
};

PixelBufferRef frameOf(int width, int height, QColor colour)
{
    PixelBufferRef buffer = PixelBuffer::create(width, height);
    buffer->image().fill(colour);
    return buffer;
}

class FramePipelineTest : public testing::Test {
protected:
    void SetUp() override
    {
        RME::reset();
        manager = std::make_unique<TNRecordManager>(fake.platform(), host);
        manager->setScreen(fake.screens.list.first());
        manager->setDelegate(&receiver);
        manager->setRecordAudioType(AudioTypeNone);
        manager->setCaptureRect(QRectF(0, 0, 66, 50)); // 64 x 48 after the enable
    }

    void deliverScreenFrameAt(double now)
    {
        fake.clock.time = now;
        fake.screenInput.deliver(frameOf(64, 48, Qt::darkCyan));
    }

    static QStringList pushedVideo()
    {
        QStringList args;
        for (const RME::Call &call : RME::callsNamed("apiEncoderPushVideo"))
            args << call.args;
        return args;
    }

    FakePlatform fake;
    FakeSessionHost host;
    DurationReceiver receiver;
    std::unique_ptr<TNRecordManager> manager;
};

TEST_F(FramePipelineTest, TimelineSkipsPausesAndStartsAtTheFirstLiveFrame)
{
    fake.clock.time = 990.0;
    startRecordingNow(*manager);
    EXPECT_EQ(fake.screenInput.minFrameDuration, 1.0 / 25);
    deliverScreenFrameAt(1000.0);
    deliverScreenFrameAt(1001.0);
    fake.clock.time = 1002.0;
    manager->pauseRecording();
    deliverScreenFrameAt(1003.0); // paused: not pushed
    fake.clock.time = 1010.0;
    manager->resumeRecording();
    deliverScreenFrameAt(1010.5);
    EXPECT_EQ(pushedVideo(), QStringList({"1005,64x48,0", "1005,64x48,1000", "1005,64x48,2500"}));
    EXPECT_EQ(manager->fileTimes(), QList<double>({2.0}));
    EXPECT_EQ(receiver.reports.size(), 3);
}

TEST_F(FramePipelineTest, WholeFrameRateLimitsTheCaptureAndTheRectangleShrinksPerEnable)
{
    host.framesPerSecond = 23.976f;
    manager->captrueScreenInputEnable(true);
    EXPECT_DOUBLE_EQ(fake.screenInput.minFrameDuration, 1.0 / 23);
    EXPECT_EQ(fake.screenInput.cropRect, QRectF(0, 0, 64, 48));
    manager->captrueScreenInputEnable(true);
    EXPECT_EQ(manager->captureRect(), QRectF(0, 0, 62, 46));

    manager->setCaptureRect(QRectF());
    manager->captrueScreenInputEnable(true);
    EXPECT_EQ(manager->captureRect(), QRectF());
    EXPECT_EQ(fake.screenInput.display, 1);
}

TEST_F(FramePipelineTest, FramesArePushedOnTheCaptureThreadAndCountForNothingAfterTheStop)
{
    startRecordingNow(*manager);
    fake.clock.time = 1000.0;
    fake.screenInput.deliver(frameOf(64, 48, Qt::darkCyan));
    // Pushed at once, without the main thread's event loop.
    EXPECT_EQ(RME::callsNamed("apiEncoderPushVideo").size(), 1u);
    manager->stopRecording();
    deliverScreenFrameAt(1001.0);
    EXPECT_EQ(pushedVideo(), QStringList({"1005,64x48,0"}));
    // An idle screen session only arms the clock.
    manager->captrueScreenInputEnable(true); // a new screen session clears the clock
    deliverScreenFrameAt(1005.0);
    EXPECT_EQ(manager->startDate(), 1005.0);
    EXPECT_EQ(pushedVideo().size(), 1);
}

// The running time is reported on the capture thread; its receiver may stop the
// recording there and then (a time or size rule), which must not wait on that frame.
TEST_F(FramePipelineTest, TheRunningTimeMayStopTheRecordingFromTheCaptureThread)
{
    struct Stopper : TNRecordAudioManagerDelegate {
        TNRecordManager *manager = nullptr;
        void recordScreenTimeDuration(int32_t) override
        {
            if (manager->status() != RecordStatusIdle)
                manager->stopRecording();
        }
    } stopper;
    stopper.manager = manager.get();
    manager->setDelegate(&stopper);
    startRecordingNow(*manager);
    LogCapture log;
    deliverScreenFrameAt(1000.0);
    EXPECT_EQ(manager->status(), RecordStatusIdle);
    EXPECT_EQ(RME::callsNamed("apiEncoderClose").size(), 1u);
    EXPECT_TRUE(log.lines().filter("still on their way").isEmpty());
}

TEST_F(FramePipelineTest, SoundOnlyWithoutSoundPushesNothing)
{
    manager->setRecordVideoType(VideoTypeAudioOnly);
    startRecordingNow(*manager);
    deliverScreenFrameAt(1000.0);
    manager->captureOutput(AudioSampleBuffer{QByteArray(64, 1), 2, 44100});
    EXPECT_TRUE(pushedVideo().isEmpty());
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushAudio").empty());
    EXPECT_TRUE(receiver.reports.isEmpty());

    // With sound, buffers are pushed only while live.
    manager->stopRecording();
    manager->setRecordAudioType(AudioTypeSystem);
    startRecordingNow(*manager);
    manager->captureOutput(AudioSampleBuffer{QByteArray(64, 1), 2, 44100});
    manager->pauseRecording();
    manager->captureOutput(AudioSampleBuffer{QByteArray(64, 1), 2, 44100});
    EXPECT_EQ(RME::callsNamed("apiEncoderPushAudio").size(), 1u);
    EXPECT_EQ(receiver.reports.size(), 1);
}

TEST_F(FramePipelineTest, CameraFramesConfigureAnIdleCameraRecordingAndShowMirrored)
{
    manager->setRecordVideoType(VideoTypeCamera);
    host.quality = 1;
    host.framesPerSecond = 30;
    manager->captrueVideoInputEnable(true);
    PixelBufferRef frame = frameOf(320, 240, Qt::black);
    frame->image().setPixelColor(0, 0, Qt::red);
    fake.cameraInput.deliver(frame);
    fake.cameraInput.deliver(frameOf(640, 480, Qt::black));
    EncodeManager &encoder = manager->encodeManager();
    EXPECT_EQ(encoder.imageSize(), QSizeF(640, 480));
    EXPECT_EQ(encoder.videoBitrate(), 5000);
    EXPECT_EQ(encoder.fps(), 30.0f);
    QCoreApplication::processEvents();
    ASSERT_EQ(host.cameraImages.size(), 2);
    EXPECT_TRUE(host.cameraImages[0].second);
    EXPECT_EQ(host.cameraImages[0].first.pixelColor(319, 0), QColor(Qt::red));
}

TEST_F(FramePipelineTest, ACameraRecordingPushesFromTheCameraThreadInTimeOrder)
{
    manager->setRecordVideoType(VideoTypeCamera);
    manager->captrueVideoInputEnable(true);
    fake.cameraInput.deliver(frameOf(320, 240, Qt::black)); // sizes the recording
    startRecordingNow(*manager);
    fake.clock.time = 1000.0;
    fake.cameraInput.deliver(frameOf(320, 240, Qt::black));
    fake.clock.time = 1000.5;
    fake.cameraInput.deliver(frameOf(320, 240, Qt::black));
    // No event loop ran: the pushes did not go through the main thread.
    EXPECT_EQ(pushedVideo(), QStringList({"1005,320x240,0", "1005,320x240,500"}));
    EXPECT_EQ(receiver.reports.size(), 2);
}

TEST_F(FramePipelineTest, CameraDuringAScreenRecordingIsShownNeverPushed)
{
    startRecordingNow(*manager);
    manager->captrueVideoInputEnable(true);
    fake.cameraInput.deliver(frameOf(320, 240, Qt::black));
    EXPECT_TRUE(pushedVideo().isEmpty());
    QCoreApplication::processEvents(); // the preview is shown on the main thread
    ASSERT_EQ(host.cameraImages.size(), 1);
    EXPECT_FALSE(host.cameraImages[0].second);
    // It never reconfigures the screen recording either.
    EXPECT_EQ(manager->encodeManager().imageSize(), QSizeF(64, 48));
}

TEST_F(FramePipelineTest, WindowRecordingDrawsTheFollowedWindowNotTheDeliveredPicture)
{
    fake.windows.windows = {{501, "Editor", "notes", QRectF(10, 20, 64, 48)}};
    fake.windows.colours[501] = QColor(200, 100, 50);
    host.windowNumber = 501;
    manager->setRecordVideoType(VideoTypeAppWindow);
    manager->setExceptWinodwArray({999});
    startRecordingNow(*manager);
    fake.windows.windows[0].bounds = QRectF(30, 40, 80, 61); // moved and resized
    deliverScreenFrameAt(1000.0);
    EXPECT_EQ(pushedVideo(), QStringList({"1005,80x60,0"}));
    const QByteArray row = RME::callsNamed("apiEncoderPushVideo").at(0).payload;
    ASSERT_GE(row.size(), 4);
    // B, G, R of the window's colour, not the delivered cyan.
    EXPECT_EQ(uint8_t(row[0]), 50);
    EXPECT_EQ(uint8_t(row[1]), 100);
    EXPECT_EQ(uint8_t(row[2]), 200);
}

} // namespace
