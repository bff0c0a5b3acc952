// Window recordings: which windows are drawn, and following the selected window.
#include "TNRecordManager.h"

#include "Description.h"
#include "Log.h"

#include <cmath>

using capstan::NSLog;

namespace {

// Down to an even number: the floor of the half, doubled.
float evenFloor(float value)
{
    return std::floor(value / 2.0f) * 2.0f;
}

float boundsValue(const QVariantMap &bounds, const char *key)
{
    return bounds.value(QLatin1String(key)).toFloat();
}

} // namespace

QList<CGWindowID> TNRecordManager::desktopElements() const
{
    std::lock_guard lock(windowsMutex_);
    return desktopElements_;
}

QList<CGWindowID> TNRecordManager::exceptWinodwArray() const
{
    std::lock_guard lock(windowsMutex_);
    return exceptWinodwArray_;
}

void TNRecordManager::setExceptWinodwArray(const QList<CGWindowID> &windows)
{
    std::lock_guard lock(windowsMutex_);
    exceptWinodwArray_ = windows;
}

QList<CGWindowID> TNRecordManager::onScreenWindows() const
{
    std::lock_guard lock(windowsMutex_);
    return onScreenWindows_;
}

TNRecordManager::WindowMatch TNRecordManager::matchSelectedWindow(CGWindowID number)
{
    const QVariantList infos =
        platform_.windows->CGWindowListCopyWindowInfo(kCGWindowListOptionIncludingWindow, number);
    WindowMatch match;
    match.description = infos.isEmpty() ? QVariantMap() : infos.first().toMap();
    if (match.description.value(QLatin1String(kCGWindowNumber)).toUInt() !=
        host_.selectedWindowNumber())
        return match;
    const QVariantMap bounds = match.description.value(QLatin1String(kCGWindowBounds)).toMap();
    setCaptureRect(QRectF(evenFloor(boundsValue(bounds, "X")), evenFloor(boundsValue(bounds, "Y")),
                          evenFloor(boundsValue(bounds, "Width")),
                          evenFloor(boundsValue(bounds, "Height"))));
    match.matched = true;
    return match;
}

void TNRecordManager::walkWindowsAtStart()
{
    const bool keepAll = host_.selectedWindowName().contains(QLatin1String("Desktop"));
    // From the last index down, so removals keep the lower indices of both lists aligned.
    const QList<CGWindowID> onScreen = onScreenWindows();
    for (qsizetype i = desktopElements().size() - 1; i >= 0; --i) {
        const WindowMatch match = matchSelectedWindow(onScreen.value(i));
        const QVariantMap &d = match.description;
        if (match.matched) {
            NSLog(lcEngine, "windowDic11:%s", qUtf8Printable(describeValue(d)));
            continue;
        }
        const QVariantMap bounds = d.value(QLatin1String(kCGWindowBounds)).toMap();
        NSLog(lcEngine, "windowDic:%s,%s,%d |||||||| %f-%f-%f-%f",
              qUtf8Printable(d.value(QLatin1String(kCGWindowOwnerName)).toString()),
              qUtf8Printable(d.value(QLatin1String(kCGWindowName)).toString()),
              d.value(QLatin1String(kCGWindowNumber)).toInt(), double(boundsValue(bounds, "X")),
              double(boundsValue(bounds, "Y")), double(boundsValue(bounds, "Width")),
              double(boundsValue(bounds, "Height")));
        if (!keepAll) {
            std::lock_guard lock(windowsMutex_);
            if (i < desktopElements_.size())
                desktopElements_.removeAt(i);
        }
    }
}

void TNRecordManager::followSelectedWindow()
{
    // A window that is gone answers no description: captureRect keeps its last value.
    const QList<CGWindowID> drawn = desktopElements();
    for (qsizetype i = drawn.size() - 1; i >= 0; --i)
        matchSelectedWindow(drawn[i]);
}
