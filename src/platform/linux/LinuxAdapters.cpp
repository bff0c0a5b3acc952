#include "LinuxAdapters.h"

#include "ScreenGeometry.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMessageBox>
#include <QScreen>
#include <QStandardPaths>
#include <QStorageInfo>
#include <sys/time.h>

double SystemClock::now() const
{
    timeval tv{};
    gettimeofday(&tv, nullptr);
    const long long micros = static_cast<long long>(tv.tv_sec) * 1000000LL + tv.tv_usec;
    return static_cast<double>(micros) / 1e6;
}

QString XdgStandardFolders::moviesFolder() const
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::MoviesLocation);
    return folder.isEmpty() ? QDir::homePath() + QStringLiteral("/Videos") : folder;
}

QString XdgStandardFolders::cachesFolder() const
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return folder.isEmpty() ? QDir::homePath() + QStringLiteral("/.cache") : folder;
}

FileSystemAttributes XdgStandardFolders::attributesOfFileSystemForPath(const QString &path) const
{
    // A folder not made yet (a fresh home has no ~/.cache) lies on its nearest parent's
    // file system.
    QFileInfo existing(path);
    while (!existing.exists() && !existing.isRoot() &&
           existing.absoluteFilePath() != QStringLiteral("/"))
        existing = QFileInfo(existing.absolutePath());
    QStorageInfo storage(existing.absoluteFilePath());
    if (!storage.isValid())
        return {};
    return {storage.bytesAvailable(), storage.bytesTotal()};
}

void LinuxPermissions::requestAccessForMediaType(MediaType, std::function<void(bool)> completion)
{
    if (completion)
        completion(true);
}

static ScreenInfo screenInfoOf(const QScreen *screen, int index)
{
    ScreenInfo info;
    // Qt's geometry is the root's; screen space is measured from the primary's corner.
    const QRect primary = QGuiApplication::primaryScreen()->geometry();
    info.frame = ScreenGeometry::rootToScreen(QRectF(screen->geometry()), QRectF(primary));
    QString name = screen->model().trimmed();
    if (name.isEmpty())
        name = screen->name();
    info.localizedName = name;
    // Qt gives no RandR id; the name is stable for a session, its position in the list too.
    info.number = static_cast<qint64>(qHash(screen->name())) & 0x7fffffff;
    if (info.number == 0)
        info.number = index + 1;
    info.backingScaleFactor = screen->devicePixelRatio();
    return info;
}

QList<ScreenInfo> QtScreenCatalog::screens() const
{
    QList<ScreenInfo> list;
    if (!qGuiApp)
        return list;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (int i = 0; i < screens.size(); ++i)
        list.append(screenInfoOf(screens[i], i));
    return list;
}

std::optional<ScreenInfo> QtScreenCatalog::mainScreen() const
{
    if (!qGuiApp || !QGuiApplication::primaryScreen())
        return std::nullopt;
    return screenInfoOf(QGuiApplication::primaryScreen(),
                        int(QGuiApplication::screens().indexOf(QGuiApplication::primaryScreen())));
}

QRectF QtScreenCatalog::primaryRootFrame() const
{
    if (!qGuiApp || !QGuiApplication::primaryScreen())
        return {};
    return QRectF(QGuiApplication::primaryScreen()->geometry());
}

void MessageBoxAlerts::showModleMessage(const QString &message, const QString &)
{
    QMessageBox box(QMessageBox::Information, QString(), message, QMessageBox::Ok);
    box.exec();
}
