// Capstan: starts the application controller, reports the screens and sound devices
// it finds, and runs until the user or the session ends it.
#include "AppDelegate.h"
#include "EZAudioDevice.h"
#include "LinuxPlatform.h"
#include "Log.h"
#include "ScreenCatalog.h"
#include "SignalWatcher.h"

#include <QApplication>

using capstan::NSLog;

static void logScreensAndDevices(const Platform &platform)
{
    const QList<ScreenInfo> screens = platform.screens->screens();
    NSLog(lcApp, "screens: %d", int(screens.size()));
    for (const ScreenInfo &screen : screens)
        NSLog(lcApp, "screen %lld \"%s\" frame (%g, %g, %g, %g)", screen.number,
              qUtf8Printable(screen.localizedName), screen.frame.x(), screen.frame.y(),
              screen.frame.width(), screen.frame.height());
    const QList<EZAudioDevice> devices = EZAudioDevice::devices(*platform.audio);
    NSLog(lcApp, "sound devices: %d", int(devices.size()));
    for (const EZAudioDevice &device : devices)
        NSLog(lcApp, "%s", qUtf8Printable(device.description()));
}

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(AppDelegate::CFBundleName);
    QApplication::setOrganizationName(AppDelegate::CFBundleName);
    QApplication::setQuitOnLastWindowClosed(false);

    SignalWatcher watcher;
    QObject::connect(&watcher, &SignalWatcher::terminationRequested, &app, [](int signalNumber) {
        NSLog(lcApp, "signal %d: quitting", signalNumber);
        QApplication::quit();
    });

    LinuxPlatform linuxPlatform;
    AppDelegate::installSharedPlatform(linuxPlatform.platform());
    AppDelegate *delegate = AppDelegate::sharedInstance();
    logScreensAndDevices(delegate->platform());
    NSLog(lcApp, "ready");
    const int status = QApplication::exec();
    delegate->applicationWillTerminate();
    return status;
}
