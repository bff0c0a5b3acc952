#include "TNClipScreenManager.h"

#include "Platform.h"
#include "ScreenCatalog.h"
#include "SoundPlayer.h"

namespace {

const QString kShutterSound = QStringLiteral("1356");

} // namespace

TNClipScreenManager::TNClipScreenManager(const Platform &platform) : platform_(platform)
{
    // Without the sound a clip is silent and otherwise the same.
    hasShutterSound_ = platform_.sounds && platform_.sounds->prepareToPlay(kShutterSound);
}

TNClipScreenManager::~TNClipScreenManager()
{
    clearClipWindowControllerArray();
}

void TNClipScreenManager::startCapture()
{
    if (isWorking_)
        return;
    isWorking_ = true;
    clearClipWindowControllerArray();
    arrayRect_ = platform_.windows->CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly,
                                                               kCGNullWindowID);
    for (const ScreenInfo &screen : platform_.screens->screens()) {
        auto *controller = new TNClipWindowController(this, platform_);
        controller->startCaptureWithScreen(screen);
        clipWindowControllerArray_.push_back(controller);
    }
}

void TNClipScreenManager::changeKeyWindowWithScreen(const ScreenInfo &screen)
{
    for (TNClipWindowController *controller : clipWindowControllerArray_) {
        if (controller->screen() == screen)
            controller->makeKeyAndOrderFront();
    }
}

void TNClipScreenManager::clearClipWindowControllerArray()
{
    for (TNClipWindowController *controller : clipWindowControllerArray_) {
        controller->setDelegate(nullptr);
        if (controller->isVisible())
            controller->orderOut();
        controller->deleteLater();
    }
    clipWindowControllerArray_.clear();
}

void TNClipScreenManager::clipWindowControllerDidClipedWithImage(TNClipWindowController *controller,
                                                                 const QImage &image)
{
    if (hasShutterSound_)
        platform_.sounds->play(kShutterSound);
    finish(controller);
    if (didClipImage)
        didClipImage(image);
}

void TNClipScreenManager::clipWindowControllerDidCancel(TNClipWindowController *controller)
{
    finish(controller);
}

void TNClipScreenManager::finish(TNClipWindowController *sender)
{
    for (TNClipWindowController *controller : clipWindowControllerArray_) {
        if (controller != sender)
            controller->endCapture();
    }
    clearClipWindowControllerArray();
    isWorking_ = false;
}
