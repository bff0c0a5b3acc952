#include "TNRecordManager.h"
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "LogCapture.h"
#include "RecordingMediaEncoder.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <algorithm>

namespace RME = RecordingMediaEncoder;

namespace {

class TNRecordManagerTest : public testing::Test {
protected:
    void SetUp() override
    {
        RME::reset();
        fake.windows.windows = {
            {301, "Terminal", "build", QRectF(11, 21, 641, 481)},
            {302, "Files", "Home", QRectF(0, 0, 800, 600)},
            {303, "Finder", "Desktop", QRectF(0, 0, 1920, 1080)},
        };
        manager = std::make_unique<TNRecordManager>(fake.platform(), host);
        manager->setScreen(fake.screens.list.first());
    }

    QStringList encoderCallsAfterCreate()
    {
        QStringList names = RME::callNames();
        return names.mid(names.lastIndexOf("apiEncoderCreate") + 1);
    }

    FakePlatform fake;
    FakeSessionHost host;
    std::unique_ptr<TNRecordManager> manager;
};

// The library calls of one session for each kind of recording, with and without sound.
TEST_F(TNRecordManagerTest, SessionCallsTheLibraryInOrder)
{
    const QStringList video{"apiEncoderSetImageSize", "apiEncoderSetImageFormat",
                            "apiEncoderSetOutputSize", "apiEncoderSetFps",
                            "apiEncoderSetVideoBitrate"};
    const QStringList audio{"apiEncoderSetAudioSrcContext", "apiEncoderSetAudioBitrate",
                            "apiEncoderSetAudioEncodeContext"};
    const QStringList start{"apiEncoderSetOutputPath", "apiEncoderSetLimitTime",
                            "apiEncoderSetLimitSize", "apiEncoderEncode"};
    struct Case {
        quint64 videoType;
        quint64 audioType;
        QStringList settings;
    };
    const Case cases[] = {
        {VideoTypeFullScreen, AudioTypeSystem, audio + video},
        {VideoTypeFullScreen, AudioTypeNone, video},
        {VideoTypeCamera, AudioTypeSystemAndMicphone, audio + video},
        {VideoTypeCamera, AudioTypeNone, video},
        {VideoTypeAudioOnly, AudioTypeMicphone, audio},
        {VideoTypeAudioOnly, AudioTypeNone, {}},
    };
    for (const Case &c : cases) {
        RME::reset();
        manager->setRecordVideoType(c.videoType);
        manager->setRecordAudioType(c.audioType);
        startRecordingNow(*manager);
        EXPECT_EQ(encoderCallsAfterCreate(),
                  QStringList{"apiEncoderSetOutputPath"} + c.settings + start)
            << c.videoType << "/" << c.audioType;
        EXPECT_EQ(RME::callsNamed("apiEncoderSetOutputPath").at(1).args, host.path);
        manager->stopRecording();
    }
}

TEST_F(TNRecordManagerTest, StartAndStopTellTheHostInOrder)
{
    host.overlayOpen = true;
    startRecordingNow(*manager);
    EXPECT_EQ(manager->status(), RecordStatusRecording);
    EXPECT_TRUE(fake.screenInput.running);
    manager->stopRecording();
    EXPECT_EQ(host.events,
              QStringList({"recording:on", "refreshStateMenuItem", "timeSets:on", "recording:off",
                           "overlay:removeView", "overlay:orderOut", "refreshStateMenuItem"}));
    EXPECT_EQ(manager->status(), RecordStatusIdle);
    EXPECT_TRUE(manager->desktopElements().isEmpty());
    // The capture session keeps running after a stop; frames just stop passing.
    EXPECT_TRUE(fake.screenInput.running);
}

TEST_F(TNRecordManagerTest, InputsFollowTypeAndPermissions)
{
    manager->setRecordVideoType(VideoTypeCamera);
    startRecordingNow(*manager);
    // The screen input never ran, so there is nothing to stop.
    EXPECT_TRUE(fake.screenInput.calls.isEmpty());
    EXPECT_EQ(fake.cameraInput.calls, QStringList({"start"}));
    manager->stopRecording();

    // A refused microphone keeps the screen input off, with no error.
    fake.screenInput.calls.clear();
    host.audioAllowed = false;
    manager->setRecordVideoType(VideoTypeFullScreen);
    startRecordingNow(*manager);
    EXPECT_TRUE(fake.screenInput.calls.isEmpty());
    EXPECT_EQ(manager->status(), RecordStatusRecording);
}

TEST_F(TNRecordManagerTest, ImageSizeComesFromScreenOrRectangle)
{
    manager->setScreen(std::nullopt);
    startRecordingNow(*manager);
    EXPECT_EQ(RME::callsNamed("apiEncoderSetImageSize").at(0).args, "0,0");
    manager->stopRecording();

    RME::reset();
    manager->setScreen(fake.screens.list.first());
    startRecordingNow(*manager);
    EXPECT_EQ(RME::callsNamed("apiEncoderSetImageSize").at(0).args, "1920,1080");
    manager->stopRecording();

    RME::reset();
    manager->setRecordVideoType(VideoTypeCustomArea);
    manager->setCaptureRect(QRectF(100, 50, 640, 360));
    startRecordingNow(*manager);
    // The enable of the screen input shrinks the selection by 2 points both ways.
    EXPECT_EQ(RME::callsNamed("apiEncoderSetImageSize").at(0).args, "638,358");
    EXPECT_EQ(fake.screenInput.cropRect, QRectF(100, 50, 638, 358));
}

TEST_F(TNRecordManagerTest, WindowWalkKeepsTheSelectedWindowRoundedToEven)
{
    host.windowNumber = 301;
    host.windowName = "build";
    manager->setRecordVideoType(VideoTypeAppWindow);
    manager->setCaptureRect(QRectF(1, 1, 1, 1));
    LogCapture log;
    startRecordingNow(*manager);
    EXPECT_EQ(manager->desktopElements(), QList<CGWindowID>({301}));
    EXPECT_EQ(manager->onScreenWindows(), QList<CGWindowID>({301, 302, 303}));
    // 11, 21, 641, 481 recorded as 10, 20, 640, 480.
    EXPECT_EQ(manager->captureRect(), QRectF(10, 20, 640, 480));
    EXPECT_EQ(RME::callsNamed("apiEncoderSetImageSize").at(0).args, "640,480");
    EXPECT_EQ(fake.screenInput.cropRect, QRectF(10, 20, 640, 480));
    const QStringList lines = log.lines();
    const auto walk = std::find_if(lines.begin(), lines.end(),
                                   [](const QString &l) { return l.startsWith("windowDic:"); });
    ASSERT_GE(std::distance(walk, lines.end()), 3);
    EXPECT_TRUE(walk->startsWith("windowDic:Finder,Desktop,303 |||||||| 0.000000-"));
    EXPECT_TRUE((walk + 2)->startsWith("windowDic11:{"));
}

TEST_F(TNRecordManagerTest, DesktopSelectionKeepsAllWindows)
{
    host.windowNumber = 303;
    host.windowName = "Desktop";
    manager->setRecordVideoType(VideoTypeAppWindow);
    manager->setCaptureRect(QRectF(0, 0, 4, 4));
    startRecordingNow(*manager);
    EXPECT_EQ(manager->desktopElements(), QList<CGWindowID>({301, 302, 303}));
    EXPECT_EQ(manager->captureRect(), QRectF(0, 0, 1920, 1080));
}

TEST_F(TNRecordManagerTest, FollowingMovesTheRectangleUntilTheWindowIsGone)
{
    host.windowNumber = 302;
    manager->setRecordVideoType(VideoTypeAppWindow);
    manager->setCaptureRect(QRectF(0, 0, 4, 4));
    startRecordingNow(*manager);
    fake.windows.windows[1].bounds = QRectF(-3, 7, 501, 301);
    manager->followSelectedWindow();
    EXPECT_EQ(manager->captureRect(), QRectF(-4, 6, 500, 300));
    EXPECT_EQ(manager->desktopElements(), QList<CGWindowID>({302}));
    fake.windows.windows.removeAt(1);
    manager->followSelectedWindow();
    EXPECT_EQ(manager->captureRect(), QRectF(-4, 6, 500, 300));
}

TEST_F(TNRecordManagerTest, PauseAndResumeSumTheStretches)
{
    fake.clock.time = 5000.0;
    // A pause before the first frame set the start closes a stretch of the whole clock.
    startRecordingNow(*manager);
    manager->pauseRecording();
    EXPECT_EQ(manager->fileTimes(), QList<double>({5000.0}));
    EXPECT_EQ(manager->status(), RecordStatusPaused);
    EXPECT_FALSE(manager->isWorking());

    fake.clock.time = 5010.0;
    manager->resumeRecording();
    EXPECT_EQ(manager->status(), RecordStatusResumed);
    EXPECT_TRUE(statusPassesFrames(manager->status()));
    EXPECT_DOUBLE_EQ(manager->startDate(), 5010.0);
    fake.clock.time = 5012.5;
    manager->pauseRecording();
    EXPECT_EQ(manager->fileTimes(), QList<double>({5000.0, 2.5}));
    // A new start empties the stretches.
    manager->stopRecording();
    startRecordingNow(*manager);
    EXPECT_TRUE(manager->fileTimes().isEmpty());
}

TEST_F(TNRecordManagerTest, RunningTimeLabels)
{
    int argc = 0;
    QCoreApplication app(argc, nullptr);
    startRecordingNow(*manager);
    RME::setResult("apiEncoderGetEncodedTimestamp", (61 * 3600 + 62) * 1000 + 999);
    RME::setResult("apiEncoderGetFileSize", 12345678);
    manager->timerDurationTimeOut();
    QCoreApplication::processEvents();
    EXPECT_EQ(host.timeLabel, "01:01:02"); // hours wrap at 60
    EXPECT_EQ(host.sizeLabel, "12.35 MB / 12.50 G");

    RME::setResult("apiEncoderGetEncodedTimestamp", -5000);
    LogCapture log;
    host.timeLabel.clear();
    manager->timerDurationTimeOut();
    QCoreApplication::processEvents();
    EXPECT_TRUE(log.contains("get error record duration= -5"));
    EXPECT_TRUE(host.timeLabel.isEmpty());
}

// Start, record, pause, resume, stop, change the sound type while idle, start again: one
// library handle per recording, all closed, and nothing the library would refuse.
TEST_F(TNRecordManagerTest, AnOrdinarySessionLeavesNoHandleOpenAndLogsNoEncoderError)
{
    int argc = 0;
    QCoreApplication app(argc, nullptr);
    LogCapture log;
    manager->setRecordAudioType(AudioTypeSystem);
    startRecordingNow(*manager);
    PixelBufferRef picture = PixelBuffer::create(8, 8);
    picture->image().fill(Qt::white);
    fake.screenInput.deliver(picture);
    manager->captureOutput(AudioSampleBuffer{QByteArray(64, 1), 2, 44100});
    manager->pauseRecording();
    manager->resumeRecording();
    fake.screenInput.deliver(picture);
    manager->stopRecording();
    manager->switchRecordType(AudioTypeMicphone);
    manager->timerDurationTimeOut();
    startRecordingNow(*manager);
    manager->stopRecording();
    QCoreApplication::processEvents();

    EXPECT_EQ(RME::handlesCreated(), 2);
    EXPECT_EQ(RME::openHandles(), 0);
    EXPECT_EQ(RME::callsNamed("apiEncoderPushVideo").size(), 2u);
    for (const RME::Call &call : RME::strayCalls())
        ADD_FAILURE() << call.name << " reached the library without an open handle";
    EXPECT_TRUE(log.lines().filter("错误码").isEmpty()) << qPrintable(log.lines().join('\n'));
    EXPECT_FALSE(log.contains("没有编码"));
}

} // namespace
