// Records pictures and sound into the file given, in real time, until it is killed:
// the other half of the crash test.
#include "SyntheticMedia.h"

#include <chrono>
#include <cstdio>
#include <thread>

int main(int argc, char **argv)
{
    if (argc < 2)
        return 2;
    EncoderHandle h = apiEncoderCreate();
    apiEncoderSetOutputPath(h, argv[1]);
    apiEncoderSetImageSize(h, 320, 240);
    apiEncoderSetFps(h, 25);
    apiEncoderSetAudioSrcContext(h, 2, 44100, MEDIAENCODER_AUDIO_FORMAT_S32);
    if (apiEncoderEncode(h) != 0)
        return 1;
    const auto start = std::chrono::steady_clock::now();
    for (int f = 0;; ++f) {
        std::this_thread::sleep_until(start + std::chrono::milliseconds(40 * f));
        std::vector<uint8_t> pixels = synthetic::picture(320, 240, f);
        VIDEO_PACKET packet = synthetic::packetOf(pixels, 320, 240);
        apiEncoderPushVideo(h, &packet, f * 40);
        std::vector<int32_t> s = synthetic::tone(440, 44100, 2, int64_t(f) * 1764, 1764);
        AudioFrame frame{reinterpret_cast<uint8_t *>(s.data()), int32_t(s.size() * 4)};
        apiEncoderPushAudio(h, &frame);
        // Each second pushed is told, so the killer need not guess how far a busy
        // machine got.
        if ((f + 1) % 25 == 0) {
            std::printf("%d\n", (f + 1) / 25);
            std::fflush(stdout);
        }
    }
}
