// The encoder library against bad input and calls in the wrong state: negative results,
// no crash, no leak (the sanitizer build runs this file); and calls from several threads.
#include "MediaProbe.h"
#include "SyntheticMedia.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

TEST(EncoderMisuse, BadArgumentsAndWrongStatesAnswerNegative)
{
    QTemporaryDir dir;
    const QByteArray unknown = QDir(dir.path()).filePath("a.xyz").toUtf8();
    const QByteArray missing = QDir(dir.path()).filePath("no/such/folder/a.mp4").toUtf8();
    const QByteArray good = QDir(dir.path()).filePath("a.mp4").toUtf8();

    EncoderHandle h = apiEncoderCreate();
    ASSERT_NE(h, nullptr);
    EXPECT_LT(apiEncoderSetOutputPath(h, unknown.constData()), 0);
    EXPECT_LT(apiEncoderSetOutputPath(h, nullptr), 0);
    EXPECT_LT(apiEncoderEncode(h), 0); // no usable path yet
    EXPECT_LT(apiEncoderSetImageSize(h, 0, 240), 0);
    EXPECT_LT(apiEncoderSetImageSize(h, 320, -2), 0);
    EXPECT_LT(apiEncoderSetOutputSize(h, -1, -1), 0);
    EXPECT_LT(apiEncoderSetFps(h, 0), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 0, 44100, MEDIAENCODER_AUDIO_FORMAT_S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 2, 44100, 7), 0);
    EXPECT_LT(apiEncoderSetLimitTime(h, -1), 0);
    EXPECT_EQ(apiEncoderSetLimitTime(h, 0), 1);
    EXPECT_EQ(apiEncoderSetLimitSize(h, 0), 1);

    std::vector<uint8_t> pixels = synthetic::picture(320, 240, 0);
    VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
    std::vector<int32_t> tone = synthetic::tone(440, 44100, 2, 0, 1024);
    AudioFrame sound{reinterpret_cast<uint8_t *>(tone.data()), int32_t(tone.size() * 4)};
    EXPECT_LT(apiEncoderPushVideo(h, &packet, 0), 0); // before the start
    EXPECT_LT(apiEncoderPushAudio(h, &sound), 0);
    EXPECT_EQ(apiEncodeIsDone(h), 1); // nothing was started, nothing is left to write

    // A missing folder fails at the start.
    ASSERT_EQ(apiEncoderSetOutputPath(h, missing.constData()), 0);
    ASSERT_EQ(apiEncoderSetImageSize(h, 320, 240), 0);
    EXPECT_LT(apiEncoderEncode(h), 0);
    EXPECT_EQ(apiEncoderClose(h), 0);

    // Pushes of broken records into a running recording.
    h = apiEncoderCreate();
    apiEncoderSetOutputPath(h, good.constData());
    apiEncoderSetImageSize(h, 320, 240);
    ASSERT_EQ(apiEncoderEncode(h), 0);
    EXPECT_LT(apiEncoderEncode(h), 0);     // twice
    EXPECT_LT(apiEncoderSetFps(h, 30), 0); // settings are fixed once started
    VIDEO_PACKET wrongFormat = packet;
    wrongFormat.format = 42;
    EXPECT_LT(apiEncoderPushVideo(h, &wrongFormat, 0), 0);
    VIDEO_PACKET tooShort = packet;
    tooShort.dataSize = 100;
    EXPECT_LT(apiEncoderPushVideo(h, &tooShort, 0), 0);
    EXPECT_LT(apiEncoderPushVideo(h, nullptr, 0), 0);
    EXPECT_LT(apiEncoderPushAudio(h, &sound), 0); // no sound in this recording
    EXPECT_EQ(apiEncoderPushVideo(h, &packet, 0), 0);
    EXPECT_EQ(apiEncoderClose(h), 0); // finishes what was pushed
    EXPECT_TRUE(MediaProbe::probeVideo(QString::fromUtf8(good)).ok);

    // After the close the handle is gone; a null one never existed.
    EXPECT_LT(apiEncoderPushVideo(h, &packet, 40), 0);
    EXPECT_LT(apiEncoderClose(h), 0);
    EXPECT_LT(apiEncoderGetFileSize(nullptr), 0);
    EXPECT_LT(apiEncodeIsDone(nullptr), 0);
    EXPECT_LT(apiEncodePushVideoTrailer(nullptr), 0);

    // A handle dropped before its start holds no thread and no file: nothing to leak
    // but the handle itself, which the close takes.
    EncoderHandle dropped = apiEncoderCreate();
    apiEncoderSetOutputPath(dropped, good.constData());
    EXPECT_EQ(apiEncoderClose(dropped), 0);
}

TEST(EncoderMisuse, CallsFromSeveralThreadsAtOnce)
{
    QTemporaryDir dir;
    const QByteArray path = QDir(dir.path()).filePath("threads.mp4").toUtf8();
    EncoderHandle h = apiEncoderCreate();
    apiEncoderSetOutputPath(h, path.constData());
    apiEncoderSetImageSize(h, 160, 120);
    apiEncoderSetFps(h, 25);
    apiEncoderSetAudioSrcContext(h, 2, 44100, MEDIAENCODER_AUDIO_FORMAT_S32);
    ASSERT_EQ(apiEncoderEncode(h), 0);
    std::atomic<bool> done{false};
    std::thread pictures([&] {
        for (int f = 0; f < 50; ++f) {
            std::vector<uint8_t> pixels = synthetic::picture(160, 120, f);
            VIDEO_PACKET packet = synthetic::packetOf(pixels, 160, 120);
            EXPECT_EQ(apiEncoderPushVideo(h, &packet, f * 40), 0);
        }
    });
    std::thread sound([&] {
        for (int i = 0; i < 50; ++i) {
            std::vector<int32_t> s = synthetic::tone(440, 44100, 2, i * 1764, 1764);
            AudioFrame frame{reinterpret_cast<uint8_t *>(s.data()), int32_t(s.size() * 4)};
            EXPECT_EQ(apiEncoderPushAudio(h, &frame), 0);
        }
    });
    std::thread watcher([&] {
        while (!done) {
            EXPECT_GE(apiEncoderGetFileSize(h), 0);
            EXPECT_GE(apiEncoderGetEncodedTimestamp(h), 0);
        }
    });
    pictures.join();
    sound.join();
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    while (apiEncodeIsDone(h) != 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    done = true;
    watcher.join();
    EXPECT_EQ(apiEncoderGetEncodedTimestamp(h), 2000);
    EXPECT_EQ(apiEncoderClose(h), 0);
    EXPECT_EQ(MediaProbe::probeVideo(QString::fromUtf8(path)).frames, 50);
}

} // namespace
