#include "LinuxPlatform.h"

#include "FfmpegMediaInspector.h"
#include "LinuxAdapters.h"
#include "NullAdapters.h"
#include "PulseAudioCaptureInput.h"
#include "PulseAudioHardware.h"
#include "PulseSoundPlayer.h"
#include "QSettingsUserDefaults.h"
#include "X11Adapters.h"

#include <xcb/xcb.h>

namespace {

// True when an X server answers on DISPLAY.
bool hasXDisplay()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const bool ok = !xcb_connection_has_error(connection);
    xcb_disconnect(connection);
    return ok;
}

} // namespace

struct LinuxPlatform::Adapters {
    QSettingsUserDefaults defaults;
    SystemClock clock;
    XdgStandardFolders folders;
    // Without a sound server these answer "no devices" and the program runs silent.
    PulseAudioHardware audio;
    PulseAudioCaptureInput audioInput{audio};
    PulseSoundPlayer sounds;
    QtScreenCatalog screens;
    LinuxSystemVersion version;
    LinuxPermissions permissions;
    MessageBoxAlerts alerts;
    NullCameraCaptureInput cameraInput;
    FfmpegMediaInspector media;
    // X11 when there is a display; null adapters that say so otherwise.
    std::unique_ptr<WindowServer> windows;
    std::unique_ptr<ScreenCaptureInput> screenInput;
    std::unique_ptr<Pointer> pointer;
};

LinuxPlatform::LinuxPlatform() : adapters_(std::make_unique<Adapters>())
{
    Adapters &a = *adapters_;
    if (hasXDisplay()) {
        a.windows = std::make_unique<X11WindowServer>();
        a.screenInput = std::make_unique<X11ScreenCaptureInput>(a.screens);
        a.pointer = std::make_unique<X11Pointer>();
    } else {
        a.windows = std::make_unique<NullWindowServer>();
        a.screenInput = std::make_unique<NullScreenCaptureInput>();
        a.pointer = std::make_unique<NullPointer>();
    }
    platform_.defaults = &a.defaults;
    platform_.media = &a.media;
    platform_.clock = &a.clock;
    platform_.folders = &a.folders;
    platform_.audio = &a.audio;
    platform_.windows = a.windows.get();
    platform_.screens = &a.screens;
    platform_.version = &a.version;
    platform_.permissions = &a.permissions;
    platform_.alerts = &a.alerts;
    platform_.screenInput = a.screenInput.get();
    platform_.cameraInput = &a.cameraInput;
    platform_.audioInput = &a.audioInput;
    platform_.pointer = a.pointer.get();
    platform_.sounds = &a.sounds;
}

LinuxPlatform::~LinuxPlatform() = default;
