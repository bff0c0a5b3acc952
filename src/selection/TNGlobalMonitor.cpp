#include "TNGlobalMonitor.h"

#include "ScreenGeometry.h"
#include "SnipUtil.h"

#include <QCoreApplication>
#include <QIcon>
#include <QSet>
#include <QStringList>

namespace {

constexpr int kMaxDisplays = 16;

// Windows of the desktop itself, never offered as applications to record.
const QStringList &systemOwnerNames()
{
    static const QStringList names{QStringLiteral("SystemUIServer"),
                                   QStringLiteral("Window Server"), QStringLiteral("Main Menu"),
                                   QStringLiteral("Dock")};
    return names;
}

// The owner name is the window's WM_CLASS class (e.g. "Firefox"), which icon themes know
// in lower case; a generic program icon when the theme has neither.
QIcon applicationIcon(const QString &ownerName)
{
    for (const QString &name : {ownerName, ownerName.toLower()}) {
        if (!name.isEmpty() && QIcon::hasThemeIcon(name))
            return QIcon::fromTheme(name);
    }
    return QIcon::fromTheme(QStringLiteral("application-x-executable"));
}

// CGRectMakeWithDictionaryRepresentation: all four numbers, else nothing.
QRectF rectFromDictionary(const QVariant &value)
{
    const QVariantMap map = value.toMap();
    static const char *const keys[] = {"X", "Y", "Width", "Height"};
    double numbers[4] = {};
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        numbers[i] = map.value(QLatin1String(keys[i])).toDouble(&ok);
        if (!ok)
            return {};
    }
    return {numbers[0], numbers[1], numbers[2], numbers[3]};
}

} // namespace

QVariantList TNGlobalMonitor::monitorList(const ScreenCatalog &screens)
{
    QVariantList list;
    const QList<ScreenInfo> all = screens.screens();
    for (qsizetype i = 0; i < all.size() && i < kMaxDisplays; ++i) {
        QVariantMap record{{kMonitorId, uint(all[i].number)}};
        if (!all[i].localizedName.isEmpty())
            record.insert(kMonitorName, all[i].localizedName);
        list.append(record);
    }
    return list;
}

QVariantList TNGlobalMonitor::applicationList(WindowServer &windows)
{
    const qint64 ownPid = QCoreApplication::applicationPid();
    QSet<qint64> seen;
    QVariantList list;
    const QVariantList infos =
        windows.CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
    for (const QVariant &item : infos) {
        const QVariantMap info = item.toMap();
        const QString ownerName = info.value(kCGWindowOwnerName).toString();
        const qint64 pid = info.value(kCGWindowOwnerPID).toLongLong();
        // A missing alpha reads as 0, so a window that does not say it is visible isn't.
        const double alpha = info.value(kCGWindowAlpha).toDouble();
        if (alpha == 0 || pid == ownPid || ownerName.isEmpty() ||
            systemOwnerNames().contains(ownerName) || seen.contains(pid))
            continue;
        seen.insert(pid);
        list.append(QVariantMap{{kAppId, uint(pid)},
                                {kAppName, ownerName},
                                {kAppIcon, QVariant::fromValue(applicationIcon(ownerName))}});
    }
    return list;
}

QRectF TNGlobalMonitor::monitorFrame(const ScreenCatalog &screens, CGDirectDisplayID display)
{
    const double primaryHeight = SnipUtil::primaryScreenFrame(screens).height();
    for (const ScreenInfo &screen : screens.screens()) {
        if (uint(screen.number) == display)
            return ScreenGeometry::screenToWindowServer(screen.frame, primaryHeight);
    }
    return {};
}

QVariantList TNGlobalMonitor::windowsForPid(WindowServer &windows, const ScreenCatalog &screens,
                                            pid_t pid)
{
    const auto main = screens.mainScreen();
    const double mainHeight = main ? main->frame.height() : 0;
    QVariantList list;
    const QVariantList infos =
        windows.CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
    for (const QVariant &item : infos) {
        const QVariantMap info = item.toMap();
        if (info.value(kCGWindowOwnerPID).toLongLong() != pid)
            continue;
        const QRectF bounds = rectFromDictionary(info.value(kCGWindowBounds));
        const QRectF frame(bounds.x(), mainHeight - (bounds.y() + bounds.height()), bounds.width(),
                           bounds.height());
        list.append(QVariantMap{{kWinName, info.value(kCGWindowOwnerName).toString()},
                                {kWinNumber, int(pid)},
                                {kWinFrame, frame}});
    }
    return list;
}
