// What one round of the half-second device watch costs the main thread: the input list
// read through the hardware port, on a machine with eight sound devices. Devices the
// server lacks are made for the run (null sinks and remapped sources) and removed after.
#include "EZAudioDevice.h"
#include "PulseAudioHardware.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr qsizetype kDevices = 8;

// pactl's first line of output, or "" when it fails.
std::string pactl(const std::string &arguments)
{
    const std::string command = "pactl " + arguments + " 2>/dev/null";
    FILE *pipe = popen(command.c_str(), "r");
    if (!pipe)
        return {};
    std::array<char, 256> line{};
    std::string out;
    if (std::fgets(line.data(), int(line.size()), pipe))
        out = line.data();
    if (pclose(pipe) != 0)
        return {};
    while (!out.empty() && (out.back() == '\n' || out.back() == ' '))
        out.pop_back();
    return out;
}

// Adds devices until the catalog holds kDevices; answers the modules it loaded.
std::vector<std::string> fillTo(PulseAudioHardware &hardware)
{
    std::vector<std::string> modules;
    for (int n = 0; EZAudioDevice::devices(hardware).size() < kDevices && n < kDevices; ++n) {
        const std::string name = "bench_watch_" + std::to_string(n);
        // Every other one a microphone-like source on the previous sink's monitor, so the
        // watch sees both kinds.
        std::string module;
        if (n % 2 == 1)
            module = pactl("load-module module-remap-source master=bench_watch_" +
                           std::to_string(n - 1) + ".monitor source_name=" + name +
                           " source_properties=device.description=Bench_Mic_" + std::to_string(n));
        else
            module = pactl("load-module module-null-sink sink_name=" + name +
                           " sink_properties=device.description=Bench_Sink_" + std::to_string(n));
        if (module.empty()) {
            std::fprintf(stderr, "the sound server refused a bench device\n");
            break;
        }
        modules.push_back(module);
    }
    return modules;
}

} // namespace

int main(int argc, char **argv)
{
    PulseAudioHardware hardware;
    const std::vector<std::string> made = fillTo(hardware);
    const qsizetype all = EZAudioDevice::devices(hardware).size();

    // Rounds a little apart, as the watch's are, so each one starts with the threads asleep;
    // the first argument sets the pause in milliseconds (0: back to back).
    constexpr int kRounds = 200;
    const auto kPause = std::chrono::milliseconds(argc > 1 ? std::atoi(argv[1]) : 10);
    using Clock = std::chrono::steady_clock;
    qsizetype inputs = 0;
    double worst = 0;
    double total = 0;
    const int tripsBefore = hardware.serverRoundTrips();
    for (int i = 0; i < kRounds; ++i) {
        std::this_thread::sleep_for(kPause);
        const Clock::time_point t = Clock::now();
        inputs = EZAudioDevice::inputDevices(hardware).size();
        const double ms = std::chrono::duration<double, std::milli>(Clock::now() - t).count();
        worst = std::max(worst, ms);
        total += ms;
    }
    std::printf("device watch: %lld devices (%lld inputs), %d rounds: mean %.3f ms per round, "
                "worst %.3f ms, %.1f server round trips per round (%lld ms apart)\n",
                static_cast<long long>(all), static_cast<long long>(inputs), kRounds,
                total / kRounds, worst, double(hardware.serverRoundTrips() - tripsBefore) / kRounds,
                static_cast<long long>(kPause.count()));

    for (auto it = made.rbegin(); it != made.rend(); ++it)
        pactl("unload-module " + *it);
    return 0;
}
