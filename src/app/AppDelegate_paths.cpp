// Where things go on disk, how they are named, and the free-space texts.
#include "AppDelegate.h"

#include "Clock.h"
#include "DurationText.h"
#include "StandardFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

QString AppDelegate::getFileNameForNowTime() const
{
    const auto ms = static_cast<qint64>(platform_.clock->now() * 1000.0);
    return QDateTime::fromMSecsSinceEpoch(ms).toString(QStringLiteral("yyyyMMdd_HHmmss"));
}

QString AppDelegate::dateToString(const QDateTime &date)
{
    return date.toLocalTime().toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
}

QString AppDelegate::audioExtensionBoxTitle() const
{
    return audioExtensions_.value(audioExtensionIndex_);
}

QString AppDelegate::createoutputPath(bool isVideo)
{
    const QString folder = QDir(platform_.folders->moviesFolder()).filePath(CFBundleName);
    // A folder that cannot be made leaves a path the encoder will refuse, with its log line.
    QDir().mkpath(folder);
    const QString extension =
        isVideo ? videoTypes_.value(videoTypeBoxIndex_) : audioExtensionBoxTitle();
    return QDir(folder).filePath(getFileNameForNowTime()) + extension;
}

QString AppDelegate::plistPath() const
{
    const QString folder = QDir(platform_.folders->cachesFolder()).filePath(CFBundleIdentifier);
    QDir().mkpath(folder);
    const QString path = QDir(folder).filePath(QStringLiteral("filelist.plist"));
    if (!QFileInfo::exists(path)) {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.close();
    }
    return path;
}

double AppDelegate::getNowTimeTimestamp() const
{
    return platform_.clock->now();
}

QString AppDelegate::timeFromString(int seconds)
{
    return durationText(seconds);
}

QString AppDelegate::timeFrom_String(int seconds)
{
    const HoursMinutesSeconds t = splitSeconds(seconds);
    if (t.h != 0)
        return QString::asprintf("%02lu时%02lu分%02lu秒", t.h, t.m, t.s);
    return QString::asprintf("%02lu分%02lu秒", t.m, t.s);
}

void AppDelegate::generateMemoryInfo()
{
    // The caches folder is asked, not the output folder.
    const FileSystemAttributes attributes =
        platform_.folders->attributesOfFileSystemForPath(platform_.folders->cachesFolder());
    freeSpace_ = double(attributes.freeSize) / 1000000000.0;
    totalSpace_ = double(attributes.totalSize);
}

QString AppDelegate::systemFreeSpace() const
{
    if (freeSpace_ > 1.0)
        return QString::asprintf("%.2f G", freeSpace_);
    // Decimal gigabytes times a binary factor: 0.5 shows as 512.00 MB.
    return QString::asprintf("%.2f MB", freeSpace_ * 1024);
}

QString AppDelegate::generateNumberFromValue(quint64 bytes) const
{
    double value = double(bytes) / 1024 / 1024;
    if (bytes >= 1000000000ULL)
        return QString::asprintf("%.2lf GB Free", value / 1024);
    return QString::asprintf("%.0lf MB Free", value);
}
