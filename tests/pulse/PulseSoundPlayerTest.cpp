// The program's sounds: the WAV reader over well-formed and broken files, and a shutter
// played for real to the test desktop's default output.
#include "PulseSoundPlayer.h"
#include "SoundDeskTest.h"

#include <QProcess>
#include <QTest>
#include <QtEndian>
#include <gtest/gtest.h>

namespace {

QByteArray chunk(const char *id, const QByteArray &body)
{
    QByteArray out(id, 4);
    char size[4];
    qToLittleEndian<quint32>(quint32(body.size()), size);
    out.append(size, 4).append(body);
    if (body.size() % 2)
        out.append('\0');
    return out;
}

QByteArray format(quint16 tag, quint16 channels, quint32 rate, quint16 bits)
{
    QByteArray f(16, '\0');
    qToLittleEndian<quint16>(tag, f.data());
    qToLittleEndian<quint16>(channels, f.data() + 2);
    qToLittleEndian<quint32>(rate, f.data() + 4);
    qToLittleEndian<quint16>(bits, f.data() + 14);
    return f;
}

QByteArray riff(const QByteArray &chunks)
{
    return chunk("RIFF", QByteArray("WAVE") + chunks);
}

TEST(WavSound, ReadsPcmAndRefusesWhatCannotBePlayed)
{
    const QByteArray samples("\x01\x00\xff\x7f", 4);
    // An odd-sized chunk before the format is padded and skipped.
    const auto sound = parseWav(riff(chunk("LIST", "odd") + chunk("fmt ", format(1, 2, 48000, 16)) +
                                     chunk("data", samples)));
    ASSERT_TRUE(sound);
    EXPECT_EQ(sound->channels, 2);
    EXPECT_EQ(sound->rate, 48000);
    EXPECT_EQ(sound->samples, samples);

    const QByteArray broken[] = {
        QByteArray("not a wav file"),
        riff(chunk("fmt ", format(3, 1, 44100, 32)) + chunk("data", samples)), // float
        riff(chunk("fmt ", format(1, 1, 44100, 8)) + chunk("data", samples)),  // 8-bit
        riff(chunk("fmt ", format(1, 1, 44100, 16))),                          // no samples
        riff(chunk("fmt ", format(1, 1, 44100, 16)) + chunk("data", samples)).left(40),
    };
    for (const QByteArray &file : broken)
        EXPECT_FALSE(parseWav(file)) << file.toHex().toStdString();
}

class PulseSoundPlayerTest : public SoundDeskTest {};

TEST_F(PulseSoundPlayerTest, TheShutterIsHeardOnTheDefaultOutput)
{
    QProcess recorder;
    recorder.start("parec", {"--device=" + serverDefault("Default Sink") + ".monitor", "--raw",
                             "--format=s16le", "--channels=1", "--rate=44100",
                             "--latency-msec=20"}); // small reads: nothing held back at the end
    ASSERT_TRUE(recorder.waitForStarted());
    QTest::qWait(500);
    {
        PulseSoundPlayer player;
        EXPECT_FALSE(player.prepareToPlay("NoSuchSound"));
        EXPECT_FALSE(player.play("NoSuchSound"));
        ASSERT_TRUE(player.play("1356"));
        player.waitUntilPlayed();
    }
    QTest::qWait(300);
    recorder.terminate();
    recorder.waitForFinished();
    const QByteArray bytes = recorder.readAllStandardOutput();
    int peak = 0;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        peak = std::max(peak, std::abs(int(qFromLittleEndian<qint16>(bytes.constData() + i))));
    // The sound peaks at 0.7 of full scale; silence stays near 0.
    EXPECT_GT(peak, 32767 * 0.3) << bytes.size() << " bytes recorded";
}

} // namespace
