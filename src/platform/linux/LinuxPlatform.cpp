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
    NullCaptureInput screenInput{QStringLiteral("Screen")};
    NullCaptureInput cameraInput{QStringLiteral("Camera")};
};

LinuxPlatform::LinuxPlatform() : adapters_(std::make_unique<Adapters>())
{
    Adapters &a = *adapters_;
    platform_ =
        Platform{&a.defaults, &a.clock,       &a.folders, &a.audio,       &a.windows,    &a.screens,
                 &a.version,  &a.permissions, &a.alerts,  &a.screenInput, &a.cameraInput};
}

LinuxPlatform::~LinuxPlatform() = default;
