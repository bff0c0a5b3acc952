#include "QDBookmark.h"

#include "UserDefaults.h"

#include <QFileInfo>

QDBookmark::QDBookmark(UserDefaults &defaults) : defaults_(defaults) {}

quint64 QDBookmark::hash(const QString &filePath)
{
    // FNV-1a 64: stable across runs and machines, unlike qHash.
    quint64 value = 14695981039346656037ULL;
    for (const char byte : filePath.toUtf8()) {
        value ^= static_cast<unsigned char>(byte);
        value *= 1099511628211ULL;
    }
    return value;
}

QString QDBookmark::keyForPath(const QString &filePath)
{
    return QStringLiteral("Access:") + QString::number(hash(filePath));
}

bool QDBookmark::saveOpenFileToBookmarkWithFilePath(const QString &filePath)
{
    const QString canonical = QFileInfo(filePath).canonicalFilePath();
    if (canonical.isEmpty())
        return false;
    defaults_.setObject(canonical.toUtf8(), keyForPath(filePath));
    defaults_.synchronize();
    return true;
}

bool QDBookmark::resolve(const QString &filePath, Resolution *resolution) const
{
    const QVariant data = defaults_.objectForKey(keyForPath(filePath));
    if (!data.isValid())
        return false;
    const QString stored = QString::fromUtf8(data.toByteArray());
    const QFileInfo info(stored);
    resolution->resolved = !stored.isEmpty() && info.isFile() && info.isReadable();
    // Stale: the bookmarked file now resolves to another place (a link was changed).
    resolution->stale = resolution->resolved && info.canonicalFilePath() != stored;
    return true;
}

bool QDBookmark::BookmarkStartAccessingSecurityScopedResourceWithFilePath(const QString &filePath)
{
    Resolution resolution;
    if (!resolve(filePath, &resolution))
        return false;
    return resolution.resolved ? true : resolution.stale;
}

bool QDBookmark::BookmarkStopAccessingSecurityScopedResourceWithFilePath(const QString &filePath)
{
    Resolution resolution;
    if (!resolve(filePath, &resolution))
        return false;
    return resolution.stale;
}

bool QDBookmark::removeFileBookmarkInfoWithFilePath(const QString &filePath)
{
    const QString key = keyForPath(filePath);
    if (!defaults_.hasKey(key))
        return false;
    defaults_.removeObjectForKey(key);
    return true;
}
