#include "EncodeManager.h"
#include "FakePorts.h"
#include "LogCapture.h"
#include "RecordTypes.h"
#include "RecordingMediaEncoder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>
#include <thread>
#include <vector>

namespace RME = RecordingMediaEncoder;

namespace {

class EncodeManagerTest : public testing::Test {
protected:
    void SetUp() override { RME::reset(); }

    AudioSampleBuffer planar(const std::vector<int32_t> &samples)
    {
        AudioSampleBuffer buffer;
        buffer.data = QByteArray(reinterpret_cast<const char *>(samples.data()),
                                 qsizetype(samples.size() * 4));
        return buffer;
    }

    std::vector<int32_t> pushedSamples(size_t index = 0)
    {
        const QByteArray bytes = RME::callsNamed("apiEncoderPushAudio").at(index).payload;
        std::vector<int32_t> samples(size_t(bytes.size()) / 4);
        std::memcpy(samples.data(), bytes.constData(), samples.size() * 4);
        return samples;
    }

    void start()
    {
        encoder.startEncoderEncode();
        encoder.waitUntilStarted();
    }

    qint64 splitType = 0;
    quint64 videoType = VideoTypeFullScreen;
    EncodeManager encoder{[this] { return splitType; }, [this] { return videoType; }};
};

TEST_F(EncodeManagerTest, SettingsWithoutARecordingAreKeptForTheNextStart)
{
    encoder.setImageSize(QSizeF(1279.7, 719.2));
    encoder.setFps(23.976f);
    encoder.setVideoBitrate(5000);
    // Idle: no handle, so nothing reaches the library and the queries answer 0.
    encoder.setOutputPath("/tmp/a.mp4");
    encoder.setUpVideoSettings();
    encoder.setUpAudioSettings();
    EXPECT_EQ(encoder.filesize(), 0);
    EXPECT_EQ(encoder.countRecordedDuration(), 0);
    EXPECT_TRUE(RME::calls().empty());

    encoder.initHandle();
    RME::reset();
    encoder.setUpVideoSettings();
    encoder.setUpAudioSettings();
    const auto calls = RME::calls();
    const std::vector<std::pair<std::string, QString>> expected{
        {"apiEncoderSetImageSize", "1279,719"},
        {"apiEncoderSetImageFormat", "1000"},
        {"apiEncoderSetOutputSize", "1279,719"},
        {"apiEncoderSetFps", QString::number(double(23.976f), 'g', 10)},
        {"apiEncoderSetVideoBitrate", "5000"},
        {"apiEncoderSetAudioSrcContext", "2,44100,2"},
        {"apiEncoderSetAudioBitrate", "12800"},
        {"apiEncoderSetAudioEncodeContext", "2,44100"},
    };
    ASSERT_EQ(calls.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(calls[i].name, expected[i].first);
        EXPECT_EQ(calls[i].args, expected[i].second) << calls[i].name;
        EXPECT_EQ(calls[i].handle, encoder.handle());
    }
}

TEST_F(EncodeManagerTest, SplitTypeChoosesTheLimits)
{
    struct Case {
        qint64 splitType;
        QString time, size;
    };
    const Case cases[] = {{0, "0", "0"}, {1, "20", "0"}, {2, "0", "10"}, {7, "0", "0"}};
    encoder.initHandle();
    encoder.setSplitTime(20);
    encoder.setSplitSize(10);
    for (const Case &c : cases) {
        RME::reset();
        splitType = c.splitType;
        LogCapture log;
        encoder.setSplit();
        EXPECT_EQ(RME::callsNamed("apiEncoderSetLimitTime").at(0).args, c.time);
        EXPECT_EQ(RME::callsNamed("apiEncoderSetLimitSize").at(0).args, c.size);
        // The lines quote the stored values even when 0 went out.
        EXPECT_TRUE(log.lines().at(0).endsWith("time:20")) << qPrintable(log.lines().at(0));
        EXPECT_TRUE(log.lines().at(1).endsWith("time:10"));
    }
}

TEST_F(EncodeManagerTest, LimitsPassThroughAFloat)
{
    splitType = 1;
    encoder.initHandle();
    encoder.setSplitTime((1 << 24) + 1);
    encoder.setSplit();
    EXPECT_EQ(RME::callsNamed("apiEncoderSetLimitTime").at(0).args, QString::number(1 << 24));
}

TEST_F(EncodeManagerTest, FailedLimitsAndCallsAreLogged)
{
    RME::setResult("apiEncoderSetLimitTime", 0);
    RME::setResult("apiEncoderSetOutputPath", -3);
    LogCapture log;
    encoder.initHandle();
    encoder.setOutputPath("/nowhere/x.mp4");
    encoder.setSplit();
    EXPECT_TRUE(log.contains("错误码:-3 ->描述：设置输出路径"));
    EXPECT_TRUE(log.lines().at(1).startsWith("设置时间分段失败，setSplit:line:"));
    EXPECT_EQ(encoder.outputPath(), "/nowhere/x.mp4");
}

TEST_F(EncodeManagerTest, StereoIsInterleavedMonoPassesOddSampleIsDropped)
{
    encoder.initHandle();
    start();
    encoder.encoderPushAudio(planar({1, 2, 3, 10, 20, 30}));
    EXPECT_EQ(pushedSamples(0), (std::vector<int32_t>{1, 10, 2, 20, 3, 30}));

    // Five samples: two frames interleaved, the last 4 bytes left unfilled but sent.
    encoder.encoderPushAudio(planar({1, 2, 10, 20, 99}));
    const auto odd = pushedSamples(1);
    ASSERT_EQ(odd.size(), 5u);
    EXPECT_EQ(std::vector<int32_t>(odd.begin(), odd.begin() + 4),
              (std::vector<int32_t>{1, 10, 2, 20}));

    encoder.setAudioChannels(1);
    encoder.encoderPushAudio(planar({5, 6, 7}));
    EXPECT_EQ(pushedSamples(2), (std::vector<int32_t>{5, 6, 7}));
    EXPECT_EQ(encoder.nTotalAudiosize(), 24 + 20 + 12);
}

TEST_F(EncodeManagerTest, AudioOnlyDurationStepsInWholeSeconds)
{
    videoType = VideoTypeAudioOnly;
    RME::setResult("apiEncoderGetEncodedTimestamp", 123456);
    encoder.initHandle();
    start();
    const QByteArray chunk(352800 / 4, 0); // a quarter second of 4-byte stereo
    for (int i = 0; i < 3; ++i)
        encoder.encoderPushAudio({chunk, 2, 44100});
    EXPECT_EQ(encoder.countRecordedDuration(), 0);
    encoder.encoderPushAudio({chunk, 2, 44100});
    EXPECT_EQ(encoder.countRecordedDuration(), 1000);
    // The library is asked all the same.
    EXPECT_EQ(RME::callsNamed("apiEncoderGetEncodedTimestamp").size(), 2u);

    // Mono still counts as two channels: half speed.
    encoder.setAudioChannels(1);
    for (int i = 0; i < 4; ++i)
        encoder.encoderPushAudio({chunk, 1, 44100});
    EXPECT_EQ(encoder.countRecordedDuration(), 2000);

    videoType = VideoTypeFullScreen;
    EXPECT_EQ(encoder.countRecordedDuration(), 123456);
}

TEST_F(EncodeManagerTest, StartAndStopAtTheLibrary)
{
    RME::setPollsBeforeDone(3);
    encoder.initHandle();
    start();
    ASSERT_TRUE(encoder.isWorking());
    VIDEO_PACKET packet{1005, 2, 2, 8, nullptr, 16};
    encoder.encoderPushVideo(&packet, 1234.9);
    LogCapture log;
    encoder.stopEncoderEncode();
    EXPECT_EQ(RME::callsNamed("apiEncoderPushVideo").at(0).args, "1005,2x2,1234");
    const QStringList tail =
        RME::callNames().mid(RME::callNames().indexOf("apiEncodePushVideoTrailer"));
    EXPECT_EQ(tail, QStringList({"apiEncodePushVideoTrailer", "apiEncodePushAudioTrailer",
                                 "apiEncodeIsDone", "apiEncodeIsDone", "apiEncodeIsDone",
                                 "apiEncodeIsDone", "apiEncoderClose"}));
    EXPECT_TRUE(log.contains("关闭编码器"));
    EXPECT_EQ(encoder.handle(), nullptr);

    // A second stop only logs; pushes after it are dropped.
    encoder.stopEncoderEncode();
    EXPECT_TRUE(log.contains("没有编码"));
    encoder.encoderPushVideo(&packet, 1);
    EXPECT_EQ(RME::callsNamed("apiEncoderPushVideo").size(), 1u);
    EXPECT_EQ(RME::callsNamed("apiEncoderClose").size(), 1u);
    EXPECT_TRUE(RME::strayCalls().empty());
}

TEST_F(EncodeManagerTest, TheStartReturnsWhileTheLibraryOpensItsCodecs)
{
    encoder.initHandle();
    RME::hold("apiEncoderEncode");
    encoder.startEncoderEncode();
    while (RME::heldCount() == 0)
        std::this_thread::yield();
    // Until the library has started, nothing is pushed to it.
    EXPECT_FALSE(encoder.isWorking());
    VIDEO_PACKET packet{1005, 2, 2, 8, nullptr, 16};
    encoder.encoderPushVideo(&packet, 40);
    encoder.encoderPushAudio(planar({1, 2}));
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushVideo").empty());
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushAudio").empty());

    // A stop meanwhile waits for the start, then ends what it started.
    auto stop = std::async(std::launch::async, [&] { encoder.stopEncoderEncode(); });
    EXPECT_EQ(stop.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    RME::releaseHeld();
    stop.get();
    const QStringList names = RME::callNames();
    EXPECT_LT(names.indexOf("apiEncoderEncode"), names.indexOf("apiEncodePushVideoTrailer"));
    EXPECT_EQ(RME::openHandles(), 0);
    EXPECT_TRUE(RME::strayCalls().empty());
}

TEST_F(EncodeManagerTest, OneHandlePerRecordingNoneLeftOpen)
{
    // Made twice before a start: the unused one is closed, not leaked.
    encoder.initHandle();
    encoder.initHandle();
    EXPECT_EQ(RME::openHandles(), 1);
    start();
    // A sound type changed while recording keeps the recording's format.
    const size_t before = RME::calls().size();
    encoder.setUpAudioSettings();
    EXPECT_EQ(RME::calls().size(), before);
    encoder.stopEncoderEncode();
    // After the stop, queries and settings (a sound type chosen while idle) stay away.
    encoder.filesize();
    encoder.countRecordedDuration();
    encoder.setUpAudioSettings();
    EXPECT_EQ(RME::openHandles(), 0);

    // A start the library refuses closes its handle at once.
    RME::setResult("apiEncoderEncode", -7);
    encoder.initHandle();
    start();
    EXPECT_EQ(encoder.handle(), nullptr);
    EXPECT_EQ(RME::openHandles(), 0);
    EXPECT_EQ(RME::handlesCreated(), 3);
    EXPECT_TRUE(RME::strayCalls().empty());
}

TEST_F(EncodeManagerTest, AStopDoesNotWaitForeverOnTheLibrary)
{
    encoder.setStopTimeout(std::chrono::milliseconds(30));
    const auto closedEventually = [] {
        for (int i = 0; i < 500 && RME::openHandles() > 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        return RME::openHandles() == 0;
    };
    struct Case {
        int64_t isDone;
        size_t maxPolls;
    };
    // A library that failed is asked once; one that never finishes until the timeout.
    for (const Case c : {Case{-1, 1}, Case{0, 1000}}) {
        RME::reset();
        RME::setResult("apiEncodeIsDone", c.isDone);
        encoder.initHandle();
        start();
        LogCapture log;
        encoder.stopEncoderEncode();
        EXPECT_LE(RME::callsNamed("apiEncodeIsDone").size(), c.maxPolls);
        EXPECT_FALSE(log.lines().filter("the encoder did not finish").isEmpty()) << c.isDone;
        EXPECT_EQ(encoder.handle(), nullptr);
        EXPECT_FALSE(encoder.isWorking());
        EXPECT_TRUE(closedEventually());
    }
}

TEST_F(EncodeManagerTest, SoundIsPushedWhileAPictureWaitsInTheLibrary)
{
    encoder.initHandle();
    start();
    RME::hold("apiEncoderPushVideo");
    VIDEO_PACKET packet{1005, 2, 2, 8, nullptr, 16};
    std::thread picture([&] { encoder.encoderPushVideo(&packet, 40); });
    while (RME::heldCount() == 0)
        std::this_thread::yield();
    auto sound = std::async(std::launch::async, [&] { encoder.encoderPushAudio(planar({1, 2})); });
    const bool soundPassed = sound.wait_for(std::chrono::seconds(2)) == std::future_status::ready;
    RME::releaseHeld();
    picture.join();
    sound.wait();
    EXPECT_TRUE(soundPassed);
    EXPECT_EQ(RME::callsNamed("apiEncoderPushAudio").size(), 1u);
    encoder.stopEncoderEncode();
    EXPECT_EQ(RME::callsNamed("apiEncoderPushVideo").size(), 1u);
}

TEST_F(EncodeManagerTest, FailedStartDropsEveryPush)
{
    RME::setResult("apiEncoderEncode", -7);
    LogCapture log;
    encoder.initHandle();
    start();
    EXPECT_TRUE(log.contains("错误码:-7 ->描述：开始编码失败"));
    EXPECT_FALSE(log.contains("====开始编码"));
    VIDEO_PACKET packet{1005, 2, 2, 8, nullptr, 16};
    encoder.encoderPushVideo(&packet, 40);
    encoder.encoderPushAudio(planar({1, 2}));
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushVideo").empty());
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushAudio").empty());
    EXPECT_EQ(encoder.nTotalAudiosize(), 0);
}

TEST_F(EncodeManagerTest, FailedPushStillCountsTheBytes)
{
    RME::setResult("apiEncoderPushAudio", -1);
    encoder.initHandle();
    start();
    LogCapture log;
    encoder.encoderPushAudio(planar({1, 2, 3, 4}));
    EXPECT_TRUE(log.contains("错误码:-1 ->描述：送入音频数据失败"));
    EXPECT_EQ(encoder.nTotalAudiosize(), 16);
}

} // namespace
