#include "FakePorts.h"

#include <QPainter>

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
    return {{kCGWindowNumber, window.number}, {kCGWindowOwnerName, window.ownerName},
            {kCGWindowName, window.name},     {kCGWindowOwnerPID, window.pid},
            {kCGWindowBounds, bounds},        {kCGWindowLayer, window.layer},
            {kCGWindowAlpha, window.alpha}};
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

static QImage composeWindows(const QList<FakeWindowServer::Window> &all,
                             const QMap<CGWindowID, QColor> &colours, const QRectF &rect,
                             const QList<CGWindowID> &wanted)
{
    if (rect.width() < 1 || rect.height() < 1)
        return {};
    QImage image(rect.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (qsizetype i = all.size() - 1; i >= 0; --i) {
        const FakeWindowServer::Window &w = all[i];
        if (!wanted.contains(w.number))
            continue;
        painter.fillRect(w.bounds.translated(-rect.topLeft()), colours.value(w.number, Qt::gray));
    }
    return image;
}

QImage FakeWindowServer::CGWindowListCreateImage(const QRectF &rect, uint32_t, CGWindowID)
{
    imageRects.append(rect);
    return composeWindows(windows, colours, rect,
                          CGWindowListCreate(kCGWindowListOptionOnScreenOnly, 0));
}

QImage FakeWindowServer::CGWindowListCreateImageFromArray(const QRectF &rect,
                                                          const QList<CGWindowID> &list, uint32_t)
{
    imageRects.append(rect);
    return composeWindows(windows, colours, rect, list);
}

FakePointer::FakePointer()
{
    arrow.image = QImage(12, 20, QImage::Format_ARGB32_Premultiplied);
    arrow.image.fill(Qt::black);
    arrow.hotSpot = QPointF(1, 1);
}
