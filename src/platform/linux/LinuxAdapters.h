#pragma once
// Small Linux adapters: clock, folders, version, permissions, screens, alerts.
#include "Alerts.h"
#include "Clock.h"
#include "Permissions.h"
#include "ScreenCatalog.h"
#include "StandardFolders.h"
#include "SystemVersion.h"

// gettimeofday: seconds and microseconds as one count of microseconds, over 1e6.
class SystemClock final : public Clock {
public:
    double now() const override;
};

// ~/Videos and ~/.cache (through XDG), free space through QStorageInfo.
class XdgStandardFolders final : public StandardFolders {
public:
    QString moviesFolder() const override;
    QString cachesFolder() const override;
    FileSystemAttributes attributesOfFileSystemForPath(const QString &path) const override;
};

// Linux takes the newest behaviour of every version test.
class LinuxSystemVersion final : public SystemVersion {
public:
    OperatingSystemVersion operatingSystemVersion() const override { return {10, 15, 0}; }
};

// X11 asks no permission for capture: everything is authorised.
class LinuxPermissions final : public Permissions {
public:
    int authorizationStatusForMediaType(MediaType) const override
    {
        return AuthorizationStatusAuthorized;
    }
    void requestAccessForMediaType(MediaType, std::function<void(bool)> completion) override;
};

// Qt screens (RandR monitors) converted to screen space.
class QtScreenCatalog final : public ScreenCatalog {
public:
    QList<ScreenInfo> screens() const override;
    std::optional<ScreenInfo> mainScreen() const override;
    QRectF primaryRootFrame() const override;
};

class MessageBoxAlerts final : public Alerts {
public:
    void showModleMessage(const QString &message, const QString &title) override;
};
