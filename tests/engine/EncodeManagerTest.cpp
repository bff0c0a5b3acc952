#include "EncodeManager.h"
#include "FakePorts.h"
#include "LogCapture.h"
#include "RecordTypes.h"
#include "RecordingMediaEncoder.h"

#include <gtest/gtest.h>

#include <cstring>
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

    FakeUserDefaults defaults;
    quint64 videoType = VideoTypeFullScreen;
    EncodeManager encoder{defaults, [this] { return videoType; }};
};

TEST_F(EncodeManagerTest, SettingsReachTheLibraryInTheirOrder)
{
    encoder.setImageSize(QSizeF(1279.7, 719.2));
    encoder.setFps(23.976f);
    encoder.setVideoBitrate(5000);
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
        QVariant splitType;
        QString time, size;
    };
    const Case cases[] = {
        {QVariant(), "0", "0"}, {0, "0", "0"},    {1, "20", "0"},
        {2, "0", "10"},         {"2", "0", "10"}, // text stores hand numbers back as text
        {7, "0", "0"},
    };
    encoder.setSplitTime(20);
    encoder.setSplitSize(10);
    for (const Case &c : cases) {
        RME::reset();
        defaults.setObject(c.splitType, "SplitType");
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
    defaults.setInteger(1, "SplitType");
    encoder.setSplitTime((1 << 24) + 1);
    encoder.setSplit();
    EXPECT_EQ(RME::callsNamed("apiEncoderSetLimitTime").at(0).args, QString::number(1 << 24));
}

TEST_F(EncodeManagerTest, FailedLimitsAndCallsAreLogged)
{
    RME::setResult("apiEncoderSetLimitTime", 0);
    RME::setResult("apiEncoderSetOutputPath", -3);
    LogCapture log;
    encoder.setOutputPath("/nowhere/x.mp4");
    encoder.setSplit();
    EXPECT_TRUE(log.contains("错误码:-3 ->描述：设置输出路径"));
    EXPECT_TRUE(log.lines().at(1).startsWith("设置时间分段失败，setSplit:line:"));
    EXPECT_EQ(encoder.outputPath(), "/nowhere/x.mp4");
}

TEST_F(EncodeManagerTest, StereoIsInterleavedMonoPassesOddSampleIsDropped)
{
    encoder.startEncoderEncode();
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
    encoder.startEncoderEncode();
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
    encoder.startEncoderEncode();
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
}

TEST_F(EncodeManagerTest, FailedStartDropsEveryPush)
{
    RME::setResult("apiEncoderEncode", -7);
    LogCapture log;
    encoder.startEncoderEncode();
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
    encoder.startEncoderEncode();
    LogCapture log;
    encoder.encoderPushAudio(planar({1, 2, 3, 4}));
    EXPECT_TRUE(log.contains("错误码:-1 ->描述：送入音频数据失败"));
    EXPECT_EQ(encoder.nTotalAudiosize(), 16);
}

} // namespace
