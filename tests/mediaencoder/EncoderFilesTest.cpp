// The encoder library through its C interface, checked with ffprobe and decoded
// pictures and sound: every container, sizes, timing, gaps and splits.
#include "MediaProbe.h"
#include "SyntheticMedia.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <set>

using synthetic::Recording;

namespace {

class EncoderFilesTest : public testing::Test {
protected:
    QString pathFor(const QString &name) const { return QDir(dir.path()).filePath(name); }
    QTemporaryDir dir;
};

TEST_F(EncoderFilesTest, EveryContainerHoldsItsCodecsAtTheRightSizeAndLength)
{
    struct Case {
        const char *file;
        const char *videoCodec; // null: sound alone
        const char *audioCodec;
    };
    const Case cases[] = {
        {"a.mp4", "h264", "aac"},        {"a.mov", "h264", "aac"},  {"a.m4v", "h264", "aac"},
        {"a.flv", "h264", "aac"},        {"a.avi", "h264", "mp3"},  {"a.mp3", nullptr, "mp3"},
        {"a.wav", nullptr, "pcm_s16le"}, {"a.m4a", nullptr, "aac"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.file);
        Recording r;
        r.path = pathFor(c.file);
        r.video = c.videoCodec != nullptr;
        r.frames = 75; // 3 s at 25 fps
        const synthetic::Result result = synthetic::record(r);
        ASSERT_EQ(result.encodeResult, 0);
        EXPECT_EQ(result.fileSize, QFileInfo(r.path).size());
        if (c.videoCodec) {
            const ProbedVideo video = MediaProbe::probeVideo(r.path);
            ASSERT_TRUE(video.ok);
            EXPECT_EQ(video.codec, c.videoCodec);
            EXPECT_EQ(video.width, 320);
            EXPECT_EQ(video.height, 240);
            EXPECT_EQ(video.frames, 75);
            EXPECT_NEAR(video.frameTimes.last() - video.frameTimes.first(), 74 / 25.0, 0.04);
            EXPECT_EQ(result.encodedMs, 3000);
        } else {
            EXPECT_TRUE(MediaProbe::probeVideo(r.path).codec.isEmpty());
            EXPECT_NEAR(result.encodedMs, 3000, 50);
        }
        const ProbedAudio audio = MediaProbe::probeAudio(r.path);
        ASSERT_TRUE(audio.ok);
        EXPECT_EQ(audio.codec, c.audioCodec);
        EXPECT_EQ(audio.sampleRate, 44100);
        EXPECT_EQ(audio.channels, 2);
        EXPECT_NEAR(audio.duration, 3.0, 0.06);
        EXPECT_NEAR(MediaProbe::toneFrequency(MediaProbe::monoSamples(r.path), 44100), 440, 2);
        EXPECT_TRUE(MediaProbe::decodesCleanly(r.path));
    }
}

TEST_F(EncoderFilesTest, PicturesOfAnotherSizeAreScaledAndOddSizesRoundedDown)
{
    Recording r;
    r.path = pathFor("scaled.mp4");
    r.width = 321;
    r.height = 241;
    r.pushWidth = 640;
    r.pushHeight = 360;
    r.frames = 10;
    r.audio = false;
    ASSERT_EQ(synthetic::record(r).encodeResult, 0);
    const ProbedVideo video = MediaProbe::probeVideo(r.path);
    EXPECT_EQ(video.width, 320);
    EXPECT_EQ(video.height, 240);
    EXPECT_EQ(video.frames, 10);
}

TEST_F(EncoderFilesTest, AGapInThePicturesLeavesNoFrozenStretchAndNoHoleInTheSound)
{
    Recording r;
    r.path = pathFor("gap.mp4");
    r.frames = 50;
    r.gapAfterFrame = 24;
    r.gapMs = 2000;
    const synthetic::Result result = synthetic::record(r);
    ASSERT_EQ(result.encodeResult, 0);
    const ProbedVideo video = MediaProbe::probeVideo(r.path);
    // Every picture once: nothing repeated to fill the gap, which is one long frame.
    ASSERT_EQ(video.frames, 50);
    double longest = 0;
    for (int i = 1; i < video.frames; ++i)
        longest = std::max(longest, video.frameTimes[i] - video.frameTimes[i - 1]);
    EXPECT_NEAR(longest, 2.04, 0.01);
    const std::vector<QByteArray> frames = MediaProbe::greyFrames(r.path, 320, 240);
    ASSERT_EQ(frames.size(), 50u);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(synthetic::indexOf(frames[size_t(i)], 320), i);
    // The sound runs through the gap: as long as the whole, a steady tone.
    const ProbedAudio audio = MediaProbe::probeAudio(r.path);
    EXPECT_NEAR(audio.duration, double(result.samplesPushed) / 44100, 0.05);
    EXPECT_NEAR(audio.duration, 4.0, 0.06);
    EXPECT_NEAR(MediaProbe::toneFrequency(MediaProbe::monoSamples(r.path), 44100), 440, 2);
}

TEST_F(EncoderFilesTest, SoundThatStopsForAWhileIsCaughtUpWithSilence)
{
    Recording r;
    r.path = pathFor("soundgap.mp4");
    r.frames = 75;
    r.soundGapFromMs = 1000;
    r.soundGapMs = 600;
    ASSERT_EQ(synthetic::record(r).encodeResult, 0);
    // The tone after the gap stays where the pictures are: the gap is silent, not skipped.
    EXPECT_NEAR(MediaProbe::probeAudio(r.path).duration, 3.0, 0.06);
    const std::vector<float> sound = MediaProbe::monoSamples(r.path);
    ASSERT_GT(sound.size(), 44100u * 29 / 10);
    const auto slice = [&](double from, double to) {
        return std::vector<float>(sound.begin() + std::ptrdiff_t(from * 44100),
                                  sound.begin() + std::ptrdiff_t(to * 44100));
    };
    EXPECT_GT(MediaProbe::toneAmplitude(slice(0.2, 0.9), 44100, 440), 0.4);
    EXPECT_LT(MediaProbe::toneAmplitude(slice(1.1, 1.5), 44100, 440), 0.01);
    EXPECT_GT(MediaProbe::toneAmplitude(slice(1.7, 2.9), 44100, 440), 0.4);
}

// Every picture of the recording appears exactly once across the files.
void expectEachFrameOnce(const QStringList &files, int frames)
{
    std::multiset<int> seen;
    for (const QString &file : files)
        for (const QByteArray &grey : MediaProbe::greyFrames(file, 320, 240))
            seen.insert(synthetic::indexOf(grey, 320));
    EXPECT_EQ(int(seen.size()), frames);
    for (int i = 0; i < frames; ++i)
        EXPECT_EQ(seen.count(i), 1u) << "frame " << i;
}

TEST_F(EncoderFilesTest, SplitsByTimeAndSizeLoseAndRepeatNothing)
{
    Recording byTime;
    byTime.path = pathFor("timed.mp4");
    byTime.frames = 125; // 5 s
    byTime.limitSeconds = 2;
    const synthetic::Result timed = synthetic::record(byTime);
    ASSERT_EQ(timed.encodeResult, 0);
    const QStringList files{byTime.path, pathFor("timed_2.mp4"), pathFor("timed_3.mp4")};
    EXPECT_FALSE(QFileInfo::exists(pathFor("timed_4.mp4")));
    double total = 0, sound = 0;
    qint64 bytes = 0;
    for (const QString &file : files) {
        SCOPED_TRACE(file.toStdString());
        const ProbedVideo video = MediaProbe::probeVideo(file);
        ASSERT_TRUE(video.ok);
        total += video.frames / 25.0;
        sound += MediaProbe::probeAudio(file).duration;
        bytes += QFileInfo(file).size();
        EXPECT_TRUE(MediaProbe::decodesCleanly(file));
    }
    EXPECT_NEAR(total, 5.0, 0.001);
    EXPECT_NEAR(MediaProbe::probeVideo(files[0]).frames / 25.0, 2.0, 0.001);
    EXPECT_NEAR(sound, 5.0, 0.1);
    EXPECT_EQ(timed.fileSize, bytes);
    expectEachFrameOnce(files, 125);

    Recording bySize;
    bySize.path = pathFor("sized.mp4");
    bySize.frames = 100;
    bySize.noisy = true;
    bySize.limitMegabytes = 1;
    bySize.audio = false;
    ASSERT_EQ(synthetic::record(bySize).encodeResult, 0);
    QStringList sized{bySize.path};
    for (int i = 2; QFileInfo::exists(pathFor(QString("sized_%1.mp4").arg(i))); ++i)
        sized << pathFor(QString("sized_%1.mp4").arg(i));
    EXPECT_GE(sized.size(), 2);
    expectEachFrameOnce(sized, 100);

    Recording unlimited;
    unlimited.path = pathFor("whole.mp4");
    unlimited.frames = 60;
    ASSERT_EQ(synthetic::record(unlimited).encodeResult, 0);
    EXPECT_FALSE(QFileInfo::exists(pathFor("whole_2.mp4")));
}

TEST_F(EncoderFilesTest, SoundAloneSplitsByTime)
{
    Recording r;
    r.path = pathFor("voice.m4a");
    r.video = false;
    r.frames = 125;
    r.limitSeconds = 2;
    ASSERT_EQ(synthetic::record(r).encodeResult, 0);
    double sound = 0;
    for (const char *name : {"voice.m4a", "voice_2.m4a", "voice_3.m4a"}) {
        ASSERT_TRUE(QFileInfo::exists(pathFor(name))) << name;
        sound += MediaProbe::probeAudio(pathFor(name)).duration;
    }
    EXPECT_NEAR(sound, 5.0, 0.1);
}

} // namespace
