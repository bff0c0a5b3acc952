#include "FakePorts.h"

QVariant FakeUserDefaults::objectForKey(const QString &key) const
{
    std::lock_guard lock(mutex_);
    return values_.value(key);
}

void FakeUserDefaults::setObject(const QVariant &value, const QString &key)
{
    std::lock_guard lock(mutex_);
    written_.append(key);
    if (value.isValid())
        values_.insert(key, value);
    else
        values_.remove(key);
}

void FakeUserDefaults::removeObjectForKey(const QString &key)
{
    std::lock_guard lock(mutex_);
    values_.remove(key);
}

bool FakeUserDefaults::synchronize()
{
    ++synchronizeCount_;
    return true;
}

QStringList FakeUserDefaults::keys() const
{
    std::lock_guard lock(mutex_);
    return values_.keys();
}

QStringList FakeUserDefaults::writtenKeys() const
{
    std::lock_guard lock(mutex_);
    return written_;
}

QVariantMap FakeWindowServer::describe(const Window &window)
{
    QVariantMap bounds{{QStringLiteral("X"), window.bounds.x()},
                       {QStringLiteral("Y"), window.bounds.y()},
                       {QStringLiteral("Width"), window.bounds.width()},
                       {QStringLiteral("Height"), window.bounds.height()}};
    return {{kCGWindowNumber, window.number},
            {kCGWindowOwnerName, window.ownerName},
            {kCGWindowName, window.name},
            {kCGWindowBounds, bounds},
            {kCGWindowLayer, 0},
            {kCGWindowAlpha, 1.0}};
}

QList<CGWindowID> FakeWindowServer::CGWindowListCreate(uint32_t option, CGWindowID)
{
    QList<CGWindowID> numbers;
    for (const Window &window : windows) {
        if ((option & kCGWindowListOptionOnScreenOnly) && !window.onScreen)
            continue;
        numbers.append(window.number);
    }
    return numbers;
}

QVariantList FakeWindowServer::CGWindowListCopyWindowInfo(uint32_t option,
                                                          CGWindowID relativeToWindow)
{
    ++describeCalls;
    QVariantList list;
    for (const Window &window : windows) {
        if (option & kCGWindowListOptionIncludingWindow) {
            if (window.number == relativeToWindow)
                list.append(describe(window));
            continue;
        }
        if ((option & kCGWindowListOptionOnScreenOnly) && !window.onScreen)
            continue;
        list.append(describe(window));
    }
    return list;
}
