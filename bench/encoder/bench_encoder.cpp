// bench_encoder: 20 s of 1920x1080 BGRA frames at 30 fps with stereo sound, pushed as
// fast as the library takes them, for screen-like content (still text blocks and a
// moving window) and for noisy content (every pixel changes every frame). Prints frames
// per second encoded, CPU seconds per second of media and peak memory, and the same for
//   ffmpeg -f rawvideo -pix_fmt bgra -s 1920x1080 -r 30 -i - -c:v libx264 -preset P
// fed the same frames through a pipe.
// Options: --seconds N (20), --preset P (ultrafast), --no-ffmpeg.
#include "../ProcessFigures.h"
#include "MediaEncoder.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

constexpr int kWidth = 1920, kHeight = 1080, kFps = 30, kRing = 30;

struct Figures {
    double framesPerSecond = 0;
    double cpuPerMediaSecond = 0;
    double peakMegabytes = 0;
};

double seconds(std::chrono::steady_clock::duration d)
{
    return std::chrono::duration<double>(d).count();
}

// Pre-rendered frames, so drawing them is not measured.
std::vector<std::vector<uint8_t>> frames(bool noisy)
{
    std::vector<std::vector<uint8_t>> ring(kRing,
                                           std::vector<uint8_t>(size_t(kWidth) * kHeight * 4));
    uint32_t seed = 7;
    for (int f = 0; f < kRing; ++f) {
        uint8_t *p = ring[size_t(f)].data();
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x, p += 4) {
                if (noisy) {
                    seed = seed * 1664525u + 1013904223u;
                    p[0] = uint8_t(seed >> 24);
                    p[1] = uint8_t(seed >> 16);
                    p[2] = uint8_t(seed >> 8);
                } else {
                    // Lines of "text" on white, and a window moving across them.
                    const bool glyph = (y % 24 < 14) && ((x / 7 + y / 24) % 5 != 0) && (x % 7 < 5);
                    const int wx = 200 + f * 20, wy = 300 + f * 8;
                    const bool window = x >= wx && x < wx + 640 && y >= wy && y < wy + 400;
                    const uint8_t v = glyph ? 30 : 245;
                    p[0] = window ? uint8_t(120 + (x - wx) / 8) : v;
                    p[1] = window ? uint8_t(80 + (y - wy) / 4) : v;
                    p[2] = window ? 60 : v;
                }
                p[3] = 255;
            }
        }
    }
    return ring;
}

Figures runLibrary(const std::vector<std::vector<uint8_t>> &ring, int secondsOfMedia,
                   const std::string &path)
{
    rusage before{}, after{};
    getrusage(RUSAGE_SELF, &before);
    // The library's memory: resident size above what the process held before, sampled.
    const long baseline = statusKilobytes("VmRSS");
    std::atomic<long> peak{0};
    std::atomic<bool> running{true};
    std::thread sampler([&] {
        while (running) {
            peak = std::max(peak.load(), statusKilobytes("VmRSS") - baseline);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    });
    const auto start = std::chrono::steady_clock::now();
    EncoderHandle h = apiEncoderCreate();
    apiEncoderSetOutputPath(h, path.c_str());
    apiEncoderSetImageSize(h, kWidth, kHeight);
    apiEncoderSetImageFormat(h, MEDIAENCODER_IMAGE_FORMAT_DEFAULT);
    apiEncoderSetOutputSize(h, kWidth, kHeight);
    apiEncoderSetFps(h, kFps);
    apiEncoderSetVideoBitrate(h, 8000);
    apiEncoderSetAudioSrcContext(h, 2, 44100, MEDIAENCODER_AUDIO_FORMAT_S32);
    apiEncoderSetAudioBitrate(h, 12800);
    apiEncoderSetAudioEncodeContext(h, 2, 44100);
    if (apiEncoderEncode(h) != 0) {
        std::fprintf(stderr, "apiEncoderEncode failed\n");
        std::exit(1);
    }
    const int frames = secondsOfMedia * kFps;
    std::vector<int32_t> sound(size_t(44100 / kFps) * 2);
    for (size_t i = 0; i < sound.size(); ++i)
        sound[i] = int32_t(std::sin(double(i / 2) * 0.0627) * 1e9);
    for (int f = 0; f < frames; ++f) {
        auto &pixels = const_cast<std::vector<uint8_t> &>(ring[size_t(f % kRing)]);
        VIDEO_PACKET packet{
            MEDIAENCODER_PIXEL_FORMAT_BGRA, kWidth, kHeight, kWidth * 4, pixels.data(),
            int32_t(pixels.size())};
        // A full queue makes the push wait, then drop: keep offering the frame.
        while (apiEncoderPushVideo(h, &packet, int64_t(f) * 1000 / kFps) != 0)
            ;
        AudioFrame frame{reinterpret_cast<uint8_t *>(sound.data()), int32_t(sound.size() * 4)};
        apiEncoderPushAudio(h, &frame);
    }
    apiEncodePushVideoTrailer(h);
    apiEncodePushAudioTrailer(h);
    while (apiEncodeIsDone(h) != 1)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    apiEncoderClose(h);
    const double wall = seconds(std::chrono::steady_clock::now() - start);
    running = false;
    sampler.join();
    getrusage(RUSAGE_SELF, &after);
    // The sampler's own reading of /proc is in the CPU figure; it is a few milliseconds.
    return {frames / wall, (cpuSeconds(after) - cpuSeconds(before)) / secondsOfMedia,
            double(peak.load()) / 1024.0};
}

Figures runFfmpeg(const std::vector<std::vector<uint8_t>> &ring, int secondsOfMedia,
                  const std::string &preset, const std::string &path)
{
    int pipeFds[2];
    if (pipe(pipeFds) != 0)
        return {};
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        dup2(pipeFds[0], 0);
        close(pipeFds[1]);
        execlp("ffmpeg", "ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "bgra", "-s",
               "1920x1080", "-r", "30", "-i", "-", "-c:v", "libx264", "-preset", preset.c_str(),
               path.c_str(), static_cast<char *>(nullptr));
        _exit(127);
    }
    close(pipeFds[0]);
    std::signal(SIGPIPE, SIG_IGN);
    const int frames = secondsOfMedia * kFps;
    for (int f = 0; f < frames; ++f) {
        const auto &pixels = ring[size_t(f % kRing)];
        size_t written = 0;
        while (written < pixels.size()) {
            const ssize_t n = write(pipeFds[1], pixels.data() + written, pixels.size() - written);
            if (n <= 0)
                break;
            written += size_t(n);
        }
    }
    close(pipeFds[1]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const double wall = seconds(std::chrono::steady_clock::now() - start);
    return {frames / wall, cpuSeconds(usage) / secondsOfMedia, double(usage.ru_maxrss) / 1024.0};
}

void print(const char *who, const char *content, const Figures &f)
{
    std::printf("%-10s %-12s %10.1f %14.3f %10.1f\n", who, content, f.framesPerSecond,
                f.cpuPerMediaSecond, f.peakMegabytes);
}

} // namespace

int main(int argc, char **argv)
{
    int secondsOfMedia = 20;
    std::string preset = "ultrafast";
    bool withFfmpeg = true;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--seconds" && i + 1 < argc)
            secondsOfMedia = std::max(1, std::atoi(argv[++i]));
        else if (arg == "--preset" && i + 1 < argc)
            preset = argv[++i];
        else if (arg == "--no-ffmpeg")
            withFfmpeg = false;
    }
    setenv("MEDIAENCODER_X264_PRESET", preset.c_str(), 1);
    char folder[] = "/tmp/bench_encoder.XXXXXX";
    if (!mkdtemp(folder))
        return 1;
    const std::string dir = folder;
    std::printf("%d s of 1920x1080 at %d fps with stereo sound, preset %s\n", secondsOfMedia, kFps,
                preset.c_str());
    std::printf("%-10s %-12s %10s %14s %10s\n", "encoder", "content", "frames/s", "CPU s/media s",
                "peak MB");
    // Peak memory: the library's growth of this process (the frames ring is not counted),
    // ffmpeg's whole process.
    for (bool noisy : {false, true}) {
        const auto ring = frames(noisy);
        const char *content = noisy ? "noisy" : "screen-like";
        const Figures ours = runLibrary(ring, secondsOfMedia, dir + "/ours.mp4");
        print("library", content, ours);
        if (withFfmpeg) {
            const Figures theirs = runFfmpeg(ring, secondsOfMedia, preset, dir + "/ffmpeg.mp4");
            print("ffmpeg", content, theirs);
            if (theirs.cpuPerMediaSecond > 0)
                std::printf("%-10s %-12s ours/ffmpeg CPU %.2f\n", "", content,
                            ours.cpuPerMediaSecond / theirs.cpuPerMediaSecond);
        }
    }
    std::remove((dir + "/ours.mp4").c_str());
    std::remove((dir + "/ffmpeg.mp4").c_str());
    rmdir(folder);
    return 0;
}
