#include "LinuxPlatform.h"

#include "LinuxAdapters.h"
#include "NullAdapters.h"
#include "NullAudioHardware.h"
#include "QSettingsUserDefaults.h"

struct LinuxPlatform::Adapters {
    QSettingsUserDefaults defaults;
    SystemClock clock;
    XdgStandardFolders folders;
    NullAudioHardware audio{QStringLiteral("no sound server adapter")};
    NullWindowServer windows;
    QtScreenCatalog screens;
    LinuxSystemVersion version;
    LinuxPermissions permissions;
    MessageBoxAlerts alerts;
    NullScreenCaptureInput screenInput;
    NullCameraCaptureInput cameraInput;
    NullAudioCaptureInput audioInput;
    NullPointer pointer;
};

LinuxPlatform::LinuxPlatform() : adapters_(std::make_unique<Adapters>())
{
    Adapters &a = *adapters_;
    platform_.defaults = &a.defaults;
    platform_.clock = &a.clock;
    platform_.folders = &a.folders;
    platform_.audio = &a.audio;
    platform_.windows = &a.windows;
    platform_.screens = &a.screens;
    platform_.version = &a.version;
    platform_.permissions = &a.permissions;
    platform_.alerts = &a.alerts;
    platform_.screenInput = &a.screenInput;
    platform_.cameraInput = &a.cameraInput;
    platform_.audioInput = &a.audioInput;
    platform_.pointer = &a.pointer;
}

LinuxPlatform::~LinuxPlatform() = default;
