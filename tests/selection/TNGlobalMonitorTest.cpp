// The lists of monitors, applications and windows against the fake window server and screens.
#include "TNGlobalMonitor.h"
#include "ScreenLayouts.h"
#include "SnipUtil.h"

#include <QCoreApplication>
#include <QIcon>
#include <gtest/gtest.h>

namespace {

using Window = FakeWindowServer::Window;

Window window(CGWindowID number, const QString &owner, qint64 pid, double alpha = 1.0,
              bool onScreen = true)
{
    Window w;
    w.number = number;
    w.ownerName = owner;
    w.name = owner + QStringLiteral(" window");
    w.bounds = QRectF(number, number, 100, 100);
    w.onScreen = onScreen;
    w.pid = pid;
    w.alpha = alpha;
    return w;
}

QStringList appNames(const QVariantList &list)
{
    QStringList names;
    for (const QVariant &item : list)
        names.append(item.toMap().value(kAppName).toString());
    return names;
}

QList<uint> appIds(const QVariantList &list)
{
    QList<uint> ids;
    for (const QVariant &item : list)
        ids.append(item.toMap().value(kAppId).toUInt());
    return ids;
}

TEST(TNGlobalMonitorTest, ApplicationListFiltersAndKeepsFrontMostOrder)
{
    const qint64 self = QCoreApplication::applicationPid();
    const struct {
        const char *what;
        QList<Window> windows;
        QStringList apps;
    } cases[] = {
        {"nothing on screen", {}, {}},
        {"one application with several windows appears once, where its front window is",
         {window(1, "Editor", 10), window(2, "Browser", 20), window(3, "Editor", 10),
          window(4, "Terminal", 30), window(5, "Browser", 20)},
         {"Editor", "Browser", "Terminal"}},
        {"only an invisible window: not listed",
         {window(1, "Ghost", 40, 0.0), window(2, "Editor", 10)},
         {"Editor"}},
        {"an invisible front window does not take the place of a visible one",
         {window(1, "Player", 50, 0.0), window(2, "Editor", 10), window(3, "Player", 50)},
         {"Editor", "Player"}},
        {"one pid under two owner names: the front name wins",
         {window(1, "Launcher", 10), window(2, "Editor", 10)},
         {"Launcher"}},
        {"a half transparent window counts", {window(1, "Overlay", 60, 0.3)}, {"Overlay"}},
        {"this process is left out",
         {window(1, "Capstan", self), window(2, "Editor", 10), window(3, "Capstan", self)},
         {"Editor"}},
        {"windows without an owner name are left out",
         {window(1, "", 70), window(2, "Editor", 10)},
         {"Editor"}},
        {"the desktop's own furniture is left out by name",
         {window(1, "SystemUIServer", 80), window(2, "Window Server", 81),
          window(3, "Main Menu", 82), window(4, "Dock", 83), window(5, "Editor", 10)},
         {"Editor"}},
        {"names only alike are kept",
         {window(1, "dock", 84), window(2, "Docker", 85), window(3, "Main Menu Editor", 86)},
         {"dock", "Docker", "Main Menu Editor"}},
        {"off-screen windows do not count",
         {window(1, "Minimised", 90, 1.0, false), window(2, "Editor", 10)},
         {"Editor"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        FakeWindowServer windows;
        windows.windows = c.windows;
        EXPECT_EQ(appNames(TNGlobalMonitor::applicationList(windows)), c.apps);
    }
}

TEST(TNGlobalMonitorTest, ApplicationRecordsCarryPidNameAndIcon)
{
    FakeWindowServer windows;
    windows.windows = {window(1, "Browser", 4242), window(2, "Editor", 17)};
    const QVariantList list = TNGlobalMonitor::applicationList(windows);
    ASSERT_EQ(list.size(), 2);
    EXPECT_EQ(appIds(list), (QList<uint>{4242, 17}));
    for (const QVariant &item : list) {
        const QVariantMap record = item.toMap();
        EXPECT_EQ(record.keys(), (QStringList{"AppId", "AppName", "icon_18"}));
        EXPECT_EQ(record.value(kAppId).typeId(), QMetaType::UInt);
        EXPECT_EQ(record.value(kAppIcon).typeId(), QMetaType::QIcon);
    }
}

TEST(TNGlobalMonitorTest, WindowsForPidAreFlippedAgainstTheMainScreen)
{
    FakeScreens screens;
    screens.list = {primaryScreen(), aboveScreen(), leftScreen()};
    FakeWindowServer windows;
    Window a = window(1, "Editor", 10);
    a.bounds = QRectF(0, 0, 100, 50);
    Window b = window(2, "Browser", 20);
    Window c = window(3, "Editor", 10);
    c.bounds = QRectF(-1200, -500, 300, 200);
    Window d = window(4, "Editor", 10, 1.0, false);
    Window e = window(5, "Editor", 10, 0.0);
    e.bounds = QRectF(10, 20, 30, 40);
    windows.windows = {a, b, c, d, e};

    const QVariantList list = TNGlobalMonitor::windowsForPid(windows, screens, 10);
    const struct {
        QRectF frame;
    } expected[] = {
        {QRectF(0, 850, 100, 50)}, {QRectF(-1200, 1200, 300, 200)}, {QRectF(10, 840, 30, 40)}};
    ASSERT_EQ(list.size(), 3); // the off-screen window is not in the list
    for (int i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const QVariantMap record = list[i].toMap();
        EXPECT_EQ(record.keys(), (QStringList{"WinFrame", "WinName", "WinNumber"}));
        EXPECT_EQ(record.value(kWinName).toString(), QStringLiteral("Editor"));
        // The pid asked for, not the window's number.
        EXPECT_EQ(record.value(kWinNumber).toInt(), 10);
        EXPECT_EQ(record.value(kWinFrame).toRectF(), expected[i].frame);
    }
    EXPECT_TRUE(TNGlobalMonitor::windowsForPid(windows, screens, 99).isEmpty());
    // The height is the main screen's, even when that one is not at the origin.
    screens.list = {aboveScreen(), primaryScreen()};
    const QVariantList fromAbove = TNGlobalMonitor::windowsForPid(windows, screens, 10);
    ASSERT_FALSE(fromAbove.isEmpty());
    EXPECT_EQ(fromAbove.first().toMap().value(kWinFrame).toRectF(), QRectF(0, 1030, 100, 50));
    screens.list.clear();
    const QVariantList withoutScreens = TNGlobalMonitor::windowsForPid(windows, screens, 10);
    ASSERT_FALSE(withoutScreens.isEmpty());
    EXPECT_EQ(withoutScreens.first().toMap().value(kWinFrame).toRectF(), QRectF(0, -50, 100, 50));
    FakeWindowServer none;
    EXPECT_TRUE(TNGlobalMonitor::windowsForPid(none, screens, 10).isEmpty());
}

TEST(TNGlobalMonitorTest, MonitorListGivesIdsAndNamesInOrder)
{
    FakeScreens screens;
    useThreeScreens(screens);
    screens.list.append({QRectF(1440, 0, 800, 600), 4000000000LL, {}}); // no name
    const QVariantList list = TNGlobalMonitor::monitorList(screens);
    ASSERT_EQ(list.size(), 4);
    const struct {
        uint id;
        const char *name; // nullptr: no name key
    } expected[] = {
        {72, "Upper Monitor"}, {71, "Primary LCD"}, {73, "Left Monitor"}, {4000000000u, nullptr}};
    for (int i = 0; i < 4; ++i) {
        SCOPED_TRACE(i);
        const QVariantMap record = list[i].toMap();
        EXPECT_EQ(record.value(kMonitorId).typeId(), QMetaType::UInt);
        EXPECT_EQ(record.value(kMonitorId).toUInt(), expected[i].id);
        if (expected[i].name)
            EXPECT_EQ(record.value(kMonitorName).toString(), QString::fromUtf8(expected[i].name));
        else
            EXPECT_FALSE(record.contains(kMonitorName));
    }
}

TEST(TNGlobalMonitorTest, MonitorListStopsAtSixteenAndIsEmptyWithoutScreens)
{
    FakeScreens screens;
    EXPECT_TRUE(TNGlobalMonitor::monitorList(screens).isEmpty());
    for (int i = 0; i < 20; ++i)
        screens.list.append({QRectF(i * 100, 0, 100, 100), i + 1, QString::number(i)});
    const QVariantList list = TNGlobalMonitor::monitorList(screens);
    ASSERT_EQ(list.size(), 16);
    EXPECT_EQ(list.last().toMap().value(kMonitorId).toUInt(), 16u);
}

TEST(TNGlobalMonitorTest, MonitorFramesAreInTheWindowServersSpace)
{
    FakeScreens screens;
    useThreeScreens(screens);
    const struct {
        CGDirectDisplayID id;
        QRectF bounds;
    } cases[] = {
        {71, QRectF(0, 0, 1440, 900)},
        {72, QRectF(0, -1080, 1920, 1080)},
        {73, QRectF(-1280, 0, 1280, 1024)},
        {99, QRectF()},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.id);
        const QRectF bounds = TNGlobalMonitor::monitorFrame(screens, c.id);
        EXPECT_EQ(bounds, c.bounds);
        // Back through the window rectangle conversion: the screen's own frame.
        if (!c.bounds.isNull()) {
            const auto it = std::find_if(screens.list.begin(), screens.list.end(),
                                         [&](const ScreenInfo &s) { return s.number == c.id; });
            EXPECT_EQ(SnipUtil::cgWindowRectToScreenRect(screens, bounds), it->frame);
        }
    }
}

} // namespace
