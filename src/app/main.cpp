// Capstan: starts the application controller and its main window, and runs until the
// user or the session ends it.
#include "AppDelegate.h"
#include "ClipService.h"
#include "DesktopWorkspace.h"
#include "EZAudioDevice.h"
#include "HomeMainWindow.h"
#include "LinuxPlatform.h"
#include "Localization.h"
#include "Log.h"
#include "ScreenCatalog.h"
#include "SignalWatcher.h"
#include "UserDefaults.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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
    // Answered before QApplication, which needs a display: by hand, from argv. Qt's own
    // options keep their single dash (-platform, -style).
    static const char usage[] =
        "Usage: capstan [option]\n"
        "  --clip     clip a screen area (in the running Capstan if there is one)\n"
        "  --version  print the version and quit\n"
        "  --help     print this help and quit\n";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--version") == 0) {
            std::printf("capstan %s\n", CAPSTAN_VERSION);
            return 0;
        }
        if (std::strcmp(argv[i], "--help") == 0) {
            std::fputs(usage, stdout);
            return 0;
        }
        if (std::strncmp(argv[i], "--", 2) == 0 && std::strcmp(argv[i], "--clip") != 0) {
            std::fprintf(stderr, "capstan: unknown option %s\n%s", argv[i], usage);
            return 2;
        }
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName(AppDelegate::CFBundleName);
    QApplication::setOrganizationName(AppDelegate::CFBundleName);
    QApplication::setQuitOnLastWindowClosed(false);
    // `capstan --clip`: a still clip from the running program, else from this one once started.
    const bool clip = QApplication::arguments().contains(QStringLiteral("--clip"));
    if (clip && ClipService::askRunningInstanceToClip())
        return 0;

    SignalWatcher watcher;
    QObject::connect(&watcher, &SignalWatcher::terminationRequested, &app, [](int signalNumber) {
        NSLog(lcApp, "signal %d: quitting", signalNumber);
        // exit, not quit: quit would first ask the windows to close, and a recording keeps
        // the main window from closing.
        QApplication::exit(0);
    });

    LinuxPlatform linuxPlatform;
    // Before anything reads a text: the user's language, else the desktop's.
    Localization::installLanguage(Localization::languageCode(
        Localization::currentLanguage(*linuxPlatform.platform().defaults)));
    AppDelegate::installSharedPlatform(linuxPlatform.platform());
    AppDelegate *delegate = AppDelegate::sharedInstance();
    logScreensAndDevices(delegate->platform());
    DesktopWorkspace workspace;
    delegate->setWorkspace(&workspace);
    HomeMainWindow window;
    delegate->setWindow(&window);
    delegate->applicationDidFinishLaunching();
    ClipService clipService(*delegate);
    if (clip)
        QTimer::singleShot(0, delegate, &AppDelegate::clipScreenArea);
    NSLog(lcApp, "ready");
    const int status = QApplication::exec();
    delegate->applicationWillTerminate();
    linuxPlatform.platform().defaults->synchronize();
    NSLog(lcApp, "quit");
    // The process ends here, as the original's exit did: a recording that still runs is not
    // closed (its file stays playable), and nothing is torn down under threads that may still
    // deliver a frame or a sound buffer.
    std::fflush(nullptr);
    std::_Exit(status);
}
