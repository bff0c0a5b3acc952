// The encoder library against bad input and calls in the wrong state: negative results,
// no crash, no leak (the sanitizer build runs this file); and calls from several threads.
#include "MediaProbe.h"
#include "SyntheticMedia.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
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

// A picture-and-sound recording of 320 x 240 into path, not started yet.
EncoderHandle configured(const QByteArray &path, bool video = true, bool audio = true)
{
    EncoderHandle h = apiEncoderCreate();
    EXPECT_EQ(apiEncoderSetOutputPath(h, path.constData()), 0);
    if (video) {
        EXPECT_EQ(apiEncoderSetImageSize(h, 320, 240), 0);
    }
    if (audio) {
        EXPECT_EQ(apiEncoderSetAudioSrcContext(h, 2, 44100, MEDIAENCODER_AUDIO_FORMAT_S32), 0);
    }
    return h;
}

// Pushes a second of pictures and sound from startMs, then ends the recording, waits
// for it and closes it.
void recordASecondAndClose(EncoderHandle h, int64_t startMs = 0)
{
    for (int f = 0; f < 25; ++f) {
        std::vector<uint8_t> pixels = synthetic::picture(320, 240, f);
        VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
        EXPECT_EQ(apiEncoderPushVideo(h, &packet, startMs + f * 40), 0);
        std::vector<int32_t> s = synthetic::tone(440, 44100, 2, f * 1764, 1764);
        AudioFrame frame{reinterpret_cast<uint8_t *>(s.data()), int32_t(s.size() * 4)};
        EXPECT_EQ(apiEncoderPushAudio(h, &frame), 0);
    }
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    EXPECT_EQ(apiEncoderClose(h), 0);
}

TEST(EncoderMisuse, AbsurdSoundFormatsAreRefusedBySetters)
{
    EncoderHandle h = apiEncoderCreate();
    const auto S32 = MEDIAENCODER_AUDIO_FORMAT_S32;
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 9, 44100, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 100000, 44100, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, -2, 44100, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 2, 7999, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 2, 192001, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 2, INT32_MAX, S32), 0);
    EXPECT_LT(apiEncoderSetAudioSrcContext(h, 2, -44100, S32), 0);
    EXPECT_LT(apiEncoderSetAudioEncodeContext(h, 3, 44100), 0);
    EXPECT_LT(apiEncoderSetAudioEncodeContext(h, 2, 96001), 0);
    EXPECT_LT(apiEncoderSetAudioEncodeContext(h, 2, 0), 0);
    EXPECT_LT(apiEncoderSetAudioBitrate(h, -1), 0);
    EXPECT_LT(apiEncoderSetVideoBitrate(h, 0), 0);
    EXPECT_LT(apiEncoderSetFps(h, 1e9), 0);
    // The edges are taken.
    EXPECT_EQ(apiEncoderSetAudioSrcContext(h, 8, 192000, S32), 0);
    EXPECT_EQ(apiEncoderSetAudioEncodeContext(h, 1, 8000), 0);
    EXPECT_EQ(apiEncoderClose(h), 0);
}

TEST(EncoderMisuse, WhatTheEncodersOrTheFileRefuseFailsTheStartAndCanBeCorrected)
{
    QTemporaryDir dir;
    const auto pathOf = [&](const char *name) { return QDir(dir.path()).filePath(name).toUtf8(); };

    // A picture size the H.264 encoder refuses.
    {
        SCOPED_TRACE("huge output size");
        const QByteArray path = pathOf("huge.mp4");
        EncoderHandle h = configured(path);
        ASSERT_EQ(apiEncoderSetOutputSize(h, 65536, 65536), 0);
        EXPECT_LT(apiEncoderEncode(h), 0);
        EXPECT_EQ(apiEncodeIsDone(h), 1);
        std::vector<uint8_t> pixels = synthetic::picture(320, 240, 0);
        VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
        EXPECT_LT(apiEncoderPushVideo(h, &packet, 0), 0);
        EXPECT_FALSE(QFileInfo::exists(QString::fromUtf8(path)));
        // The refusal left nothing half open: a size it takes starts the same handle.
        ASSERT_EQ(apiEncoderSetOutputSize(h, 320, 240), 0);
        ASSERT_EQ(apiEncoderEncode(h), 0);
        recordASecondAndClose(h);
        const ProbedVideo video = MediaProbe::probeVideo(QString::fromUtf8(path));
        EXPECT_EQ(video.width, 320);
        EXPECT_EQ(video.frames, 25);
        EXPECT_TRUE(MediaProbe::probeAudio(QString::fromUtf8(path)).ok);
    }
    // A sample rate MP3 does not have.
    {
        SCOPED_TRACE("mp3 at 96 kHz");
        const QByteArray path = pathOf("fast.mp3");
        EncoderHandle h = configured(path, false);
        ASSERT_EQ(apiEncoderSetAudioEncodeContext(h, 2, 96000), 0);
        EXPECT_LT(apiEncoderEncode(h), 0);
        ASSERT_EQ(apiEncoderSetAudioEncodeContext(h, 2, 48000), 0);
        ASSERT_EQ(apiEncoderEncode(h), 0);
        std::vector<int32_t> s = synthetic::tone(440, 44100, 2, 0, 44100);
        AudioFrame frame{reinterpret_cast<uint8_t *>(s.data()), int32_t(s.size() * 4)};
        EXPECT_EQ(apiEncoderPushAudio(h, &frame), 0);
        apiEncodePushAudioTrailer(h);
        EXPECT_EQ(apiEncoderClose(h), 0);
        const ProbedAudio audio = MediaProbe::probeAudio(QString::fromUtf8(path));
        EXPECT_EQ(audio.sampleRate, 48000);
        EXPECT_NEAR(audio.duration, 1.0, 0.06);
    }
    // Files that cannot be written: a folder in the way, a place nobody may create files
    // in (root included), and a full disk.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("taken.mp4")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), QDir(dir.path()).filePath("full.mp4")));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), QDir(dir.path()).filePath("full.wav")));
    const QByteArray unwritable[] = {pathOf("taken.mp4"), QByteArray("/proc/capstan-test.mp4"),
                                     pathOf("full.mp4"), pathOf("full.wav")};
    for (const QByteArray &path : unwritable) {
        SCOPED_TRACE(path.constData());
        EncoderHandle h = configured(path, !path.endsWith(".wav"));
        EXPECT_LT(apiEncoderEncode(h), 0);
        EXPECT_EQ(apiEncodeIsDone(h), 1);
        EXPECT_LT(apiEncodePushAudioTrailer(h), 0);
        EXPECT_EQ(apiEncoderClose(h), 0);
    }
}

TEST(EncoderMisuse, AFileThatCannotBeOpenedAtASplitStopsTheWorkerWithALogLine)
{
    QTemporaryDir dir;
    const QByteArray path = QDir(dir.path()).filePath("split.mp4").toUtf8();
    // The second file's name is taken by a folder.
    ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("split_2.mp4")));
    EncoderHandle h = configured(path, true, false);
    apiEncoderSetFps(h, 25);
    ASSERT_EQ(apiEncoderSetLimitTime(h, 1), 1);
    ASSERT_EQ(apiEncoderEncode(h), 0);

    testing::internal::CaptureStderr();
    int refused = 0;
    for (int f = 0; f < 100; ++f) {
        std::vector<uint8_t> pixels = synthetic::picture(320, 240, f);
        VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
        if (apiEncoderPushVideo(h, &packet, f * 40) < 0)
            ++refused;
    }
    // No trailer yet: the worker stops by itself.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (apiEncodeIsDone(h) != 1 && std::chrono::steady_clock::now() < deadline)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    EXPECT_EQ(apiEncodeIsDone(h), 1);
    std::vector<uint8_t> pixels = synthetic::picture(320, 240, 0);
    VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
    EXPECT_LT(apiEncoderPushVideo(h, &packet, 10000), 0);
    EXPECT_EQ(apiEncoderClose(h), 0);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("split_2.mp4"), std::string::npos) << log;
    EXPECT_NE(log.find("stops"), std::string::npos) << log;
    // The frames after the failure were refused, not queued for nobody.
    EXPECT_GT(refused, 0);

    // The first file was finished and holds the first second.
    const ProbedVideo first = MediaProbe::probeVideo(QString::fromUtf8(path));
    ASSERT_TRUE(first.ok);
    EXPECT_EQ(first.frames, 25);
    EXPECT_TRUE(MediaProbe::decodesCleanly(QString::fromUtf8(path)));
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
