// The screen road of a recording: the capture permission, then one overlay per screen.
#include "Log.h"
#include "Permissions.h"
#include "SystemVersion.h"
#include "TNRecordManager.h"

#include <QMetaObject>
#include <QPointer>
#include <algorithm>

void TNRecordManager::startRecordScreen()
{
    if (!platform_.version->isAtLeast(10, 14) ||
        platform_.permissions->authorizationStatusForMediaType(MediaType::Video) ==
            Permissions::AuthorizationStatusAuthorized) {
        readyToRecordScreen();
        return;
    }
    // The answer may come on any thread; the overlays are made on this one. A refusal
    // ends the matter without a word.
    QPointer<TNRecordManager> self(this);
    platform_.permissions->requestAccessForMediaType(MediaType::Video, [self](bool granted) {
        if (!granted || !self)
            return;
        QMetaObject::invokeMethod(
            self.data(),
            [self] {
                if (self)
                    self->readyToRecordScreen();
            },
            Qt::QueuedConnection);
    });
}

void TNRecordManager::readyToRecordScreen()
{
    if (status() != RecordStatusIdle)
        return;
    setIsDisableChangeScreen(false);
    clearRecordWindowControllerArray();
    retiredControllers_.clear();
    arrayRect_ = platform_.windows->CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly,
                                                               kCGNullWindowID);
    // Every overlay exists before any starts: a whole-screen recording on another screen
    // than the first is started by that screen's overlay.
    for (const ScreenInfo &info : platform_.screens->screens()) {
        if (auto controller = host_.makeRecordScreenWindowController(info))
            recordWindowControllerArray_.push_back(std::move(controller));
    }
    // A start may take controllers out of the collection; walk a copy of the pointers.
    std::vector<RecordScreenWindowController *> controllers;
    for (const auto &controller : recordWindowControllerArray_)
        controllers.push_back(controller.get());
    for (RecordScreenWindowController *controller : controllers) {
        const bool stillThere =
            std::any_of(recordWindowControllerArray_.cbegin(), recordWindowControllerArray_.cend(),
                        [controller](const auto &held) { return held.get() == controller; });
        if (stillThere && status() == RecordStatusIdle)
            controller->startRecorderScreen();
    }
}

void TNRecordManager::clearRecordWindowControllerArray()
{
    while (!recordWindowControllerArray_.empty())
        retire(recordWindowControllerArray_.begin());
}

void TNRecordManager::removeRecordWindowController(const ScreenInfo &info)
{
    const auto found =
        std::find_if(recordWindowControllerArray_.begin(), recordWindowControllerArray_.end(),
                     [&info](const auto &held) { return held->screen() == info; });
    if (found == recordWindowControllerArray_.end())
        return;
    retire(found);
}

void TNRecordManager::removeFirstOtherScreenController(const ScreenInfo &info)
{
    const auto found =
        std::find_if(recordWindowControllerArray_.begin(), recordWindowControllerArray_.end(),
                     [&info](const auto &held) { return !(held->screen() == info); });
    if (found == recordWindowControllerArray_.end())
        return;
    retire(found);
}

void TNRecordManager::retire(
    std::vector<std::unique_ptr<RecordScreenWindowController>>::iterator controller)
{
    // The controller may be the caller (a whole-screen start drops its own overlay): it
    // is kept until the next arming instead of being destroyed under its own feet.
    (*controller)->cleanup();
    retiredControllers_.push_back(std::move(*controller));
    recordWindowControllerArray_.erase(controller);
}

void TNRecordManager::changeKeyWindowWithScreen(const ScreenInfo &info)
{
    if (isDisableChangeScreen())
        return;
    for (const auto &controller : recordWindowControllerArray_)
        if (controller->screen() == info)
            controller->makeKeyAndOrderFront();
}

void TNRecordManager::recordScreenWindowControllerDidSelectRegion(
    RecordScreenWindowController *selected)
{
    for (const auto &controller : recordWindowControllerArray_)
        if (controller.get() != selected)
            controller->orderOut();
}

void TNRecordManager::recordScreenWindowControllerRemoveEventMonitor()
{
    for (const auto &controller : recordWindowControllerArray_)
        controller->removeEventMonitor();
}

void TNRecordManager::recordScreenWindowControllerDidCancel()
{
    clearRecordWindowControllerArray();
}
