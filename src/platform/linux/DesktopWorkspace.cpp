#include "DesktopWorkspace.h"

#include "Log.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

bool DesktopWorkspace::openFile(const QString &path, bool)
{
    const bool opened = QDesktopServices::openUrl(QUrl::fromLocalFile(path));
    if (!opened)
        capstan::NSLog(lcPlatform, "no application opens %s", qUtf8Printable(path));
    return opened;
}

bool DesktopWorkspace::openURL(const QString &url)
{
    const bool opened = QDesktopServices::openUrl(QUrl(url));
    if (!opened)
        capstan::NSLog(lcPlatform, "no browser opens %s", qUtf8Printable(url));
    return opened;
}

static void openParentFolder(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(folder)))
        capstan::NSLog(lcPlatform, "no application opens the folder %s", qUtf8Printable(folder));
}

void DesktopWorkspace::selectFile(const QString &path)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openParentFolder(path);
        return;
    }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"),
        QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    call << QStringList{QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded())} << QString();
    // Asynchronous: a file manager that is started on demand can take seconds to answer.
    auto *watcher = new QDBusPendingCallWatcher(bus.asyncCall(call));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [path](QDBusPendingCallWatcher *finished) {
                         if (finished->isError()) {
                             capstan::NSLog(lcPlatform, "no file manager shows items: %s",
                                            qUtf8Printable(finished->error().message()));
                             openParentFolder(path);
                         }
                         finished->deleteLater();
                     });
}
