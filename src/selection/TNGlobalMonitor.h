#pragma once
// Lists of monitors, applications and windows, as records (maps) under the keys below.
// Class operations only; nothing is kept between calls. Every call asks the ports afresh.
#include "ScreenCatalog.h"
#include "WindowServer.h"

#include <QRectF>
#include <QVariantList>
#include <cstdint>
#include <sys/types.h>

using CGDirectDisplayID = uint32_t;

// Monitor records.
inline constexpr char kMonitorId[] = "MonitorId";     // display id, unsigned
inline constexpr char kMonitorName[] = "MonitorName"; // absent when the display has no name
// Application records.
inline constexpr char kAppId[] = "AppId";     // process id, unsigned
inline constexpr char kAppName[] = "AppName"; // owner name of its window
inline constexpr char kAppIcon[] = "icon_18"; // QIcon
// Window records.
inline constexpr char kWinName[] = "WinName";     // owner name of the window
inline constexpr char kWinNumber[] = "WinNumber"; // the pid asked for, not a window number
inline constexpr char kWinFrame[] = "WinFrame";   // QRectF, screen space of the main screen

class TNGlobalMonitor {
public:
    // At most 16 displays, in the catalog's order.
    static QVariantList monitorList(const ScreenCatalog &screens);
    // One record per process, at the place of its front-most on-screen window. Leaves out
    // this process, invisible windows (alpha 0), windows without an owner name and the
    // system's own furniture by name.
    static QVariantList applicationList(WindowServer &windows);
    // The display's bounds in the window server's space; empty for an unknown display.
    static QRectF monitorFrame(const ScreenCatalog &screens, CGDirectDisplayID display);
    // One record per on-screen window of the process, front-most first.
    static QVariantList windowsForPid(WindowServer &windows, const ScreenCatalog &screens,
                                      pid_t pid);
};
