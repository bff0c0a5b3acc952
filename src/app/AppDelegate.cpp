#include "AppDelegate.h"

#include "Alerts.h"
#include "FileListWindowController.h"
#include "Localization.h"
#include "Permissions.h"
#include "SettingsKeys.h"
#include "SystemVersion.h"
#include "UserDefaults.h"

#include <mutex>

namespace {
std::once_flag sharedOnce;
AppDelegate *sharedDelegate = nullptr;
std::optional<Platform> sharedPlatform;
} // namespace

void AppDelegate::installSharedPlatform(const Platform &platform)
{
    sharedPlatform = platform;
}

AppDelegate *AppDelegate::sharedInstance()
{
    std::call_once(sharedOnce, [] {
        // main installs the platform first; nothing here knows how to build one.
        if (!sharedPlatform)
            qFatal("AppDelegate::sharedInstance: no platform installed");
        // Lives as long as the process, as the application controller does.
        sharedDelegate = create(*sharedPlatform).release();
    });
    return sharedDelegate;
}

AppDelegate::AppDelegate(const Platform &platform) : platform_(platform) {}

AppDelegate::~AppDelegate()
{
    // The list window has no parent: it is a window of its own.
    delete fileList_;
}

TNRecordManager *AppDelegate::recordManager()
{
    if (!recordManager_)
        recordManager_ = std::make_unique<TNRecordManager>(platform_, *this);
    return recordManager_.get();
}

EncodeManager &AppDelegate::encodeManager()
{
    return recordManager()->encodeManager();
}

qint64 AppDelegate::splitType() const
{
    return platform_.defaults->integerForKey(Keys::SplitType);
}

bool AppDelegate::permissionGranted(MediaType type, bool showAlert, MediaType requestType)
{
    if (!platform_.version->isAtLeast(10, 14))
        return true;
    switch (platform_.permissions->authorizationStatusForMediaType(type)) {
    case Permissions::AuthorizationStatusAuthorized:
        return true;
    case 1:
    case 2:
        if (showAlert)
            platform_.alerts->showModleMessage(
                Localization::localizedStringForKey(QStringLiteral("Alert_DisAble_Message")),
                Localization::localizedStringForKey(QStringLiteral("Alert_Title")));
        return false;
    case 0:
        platform_.permissions->requestAccessForMediaType(requestType, nullptr);
        return false;
    default:
        return true;
    }
}

bool AppDelegate::checkCapture(bool showAlert)
{
    return permissionGranted(MediaType::Video, showAlert, MediaType::Video);
}

bool AppDelegate::checkCaptureAudio()
{
    // An undetermined microphone permission asks for the camera, as it always has.
    return permissionGranted(MediaType::Audio, true, MediaType::Video);
}

void AppDelegate::refreshStateMenuItem()
{
    emit stateMenuItemsNeedRefresh();
}

void AppDelegate::setRecordCurrentTimeLabel(const QString &text)
{
    recordCurrentTimeLabel_ = text;
    emit recordLabelsChanged();
}

void AppDelegate::setRecordFileSizeLabel(const QString &text)
{
    recordFileSizeLabel_ = text;
    emit recordLabelsChanged();
}
