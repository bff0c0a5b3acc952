// Which of the test desktop's sound servers the tests talk to. scripts/test-desktop starts
// PulseAudio and PipeWire side by side and exports each one's address; ctest runs every sound
// test once per server, naming it in CAPSTAN_SOUND_SERVER. PULSE_SERVER is set from it before
// any test connects, so the program under test finds the server as it would at a login.
#include <QByteArray>
#include <QtGlobal>
#include <cstdio>
#include <gtest/gtest.h>

namespace {

class SoundServerChoice : public testing::Environment {
public:
    void SetUp() override
    {
        const QByteArray server = qgetenv("CAPSTAN_SOUND_SERVER");
        if (server.isEmpty())
            return; // run by hand: whatever PULSE_SERVER says
        const char *variable = server == "pipewire"     ? "DESK_PIPEWIRE_SERVER"
                               : server == "pulseaudio" ? "DESK_PULSEAUDIO_SERVER"
                                                        : nullptr;
        ASSERT_NE(variable, nullptr) << "CAPSTAN_SOUND_SERVER: pulseaudio or pipewire";
        const QByteArray address = qgetenv(variable);
        // Never the other server in its place: a desktop without this one makes the tests
        // skip, which scripts/run-tests counts as a failure.
        if (address.isEmpty())
            qunsetenv("PULSE_SERVER");
        else
            qputenv("PULSE_SERVER", address);
        std::printf("sound server: %s at %s\n", server.constData(),
                    address.isEmpty() ? "(not started)" : address.constData());
    }
};

const testing::Environment *const kChoice =
    testing::AddGlobalTestEnvironment(new SoundServerChoice);

} // namespace
