#include "ClipService.h"

#include "AppDelegate.h"
#include "Log.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

using capstan::NSLog;

const char *const ClipService::serviceName = "org.capstan.Capstan";
const char *const ClipService::objectPath = "/org/capstan/Capstan";

ClipService::ClipService(AppDelegate &delegate) : delegate_(delegate)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        NSLog(lcApp, "no session bus: capstan --clip cannot reach this program");
        return;
    }
    if (!bus.registerObject(QString::fromLatin1(objectPath), this,
                            QDBusConnection::ExportAllSlots) ||
        !bus.registerService(QString::fromLatin1(serviceName)))
        NSLog(lcApp, "%s is taken on the session bus: capstan --clip reaches the other program",
              serviceName);
}

bool ClipService::askRunningInstanceToClip()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface() ||
        !bus.interface()->isServiceRegistered(QString::fromLatin1(serviceName)))
        return false;
    const QDBusMessage reply =
        bus.call(QDBusMessage::createMethodCall(
                     QString::fromLatin1(serviceName), QString::fromLatin1(objectPath),
                     QString::fromLatin1(serviceName), QStringLiteral("Clip")),
                 QDBus::Block, 5000);
    return reply.type() == QDBusMessage::ReplyMessage;
}

void ClipService::Clip()
{
    delegate_.clipScreenArea();
}
