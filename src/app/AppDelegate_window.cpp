// The main window's life: its making, hiding, closing, the tray and the secondary windows.
#include "AppDelegate.h"

#include "Alerts.h"
#include "EZAudioDevice.h"
#include "EncodeManager.h"
#include "FileListWindowController.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "Log.h"
#include "MainThreadCall.h"
#include "NSVertProgressView.h"
#include "QDBookmark.h"
#include "SKVoiceWaveView.h"
#include "ScreenCatalog.h"
#include "SettingsKeys.h"
#include "StatusItem.h"
#include "TNButton.h"
#include "TNRecordScreenWindowController.h"
#include "UserDefaults.h"

#include <QApplication>
#include <QComboBox>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QStandardPaths>

using capstan::NSLog;
using Localization::localizedStringForKey;

std::unique_ptr<RecordScreenWindowController>
AppDelegate::makeRecordScreenWindowController(const ScreenInfo &screen)
{
    return std::make_unique<TNRecordScreenWindowController>(*recordManager(), *this, platform_,
                                                            screen);
}

void AppDelegate::setWindow(HomeMainWindow *window)
{
    window_ = window;
    window_->setHeightKeepingCentre(HomeMainWindow::kHomeHeight);
    recordManager()->setDelegate(this);
    rememberSystemDefaultDevices();
    tickCall_ = new MainThreadCall([this] { showTick(tickSeconds_.load()); }, this);

    const QList<EZAudioDevice> inputs = EZAudioDevice::inputDevices(*platform_.audio);
    const QList<EZAudioDevice> outputs = EZAudioDevice::outputDevices(*platform_.audio);
    storeDeviceLists(inputs, outputs);
    window_->voiceWaveView->hide();
    window_->infoView->hide();
    window_->onlyAudioStrip->hide();
    // The watermark picture the user chose earlier, if it can still be read.
    const QString imagePath =
        platform_.defaults->stringForKey(QString::fromLatin1(Keys::WatermarkImagePath));
    if (!imagePath.isEmpty() &&
        QDBookmark(*platform_.defaults)
            .BookmarkStartAccessingSecurityScopedResourceWithFilePath(imagePath))
        setWatermarkImage(QImage(imagePath));

    // A split rule of 0 means the defaults: 20 minutes, 10 (hundred) megabytes.
    const qint64 splitTime = platform_.defaults->integerForKey(Keys::SplitTime);
    const qint64 splitSize = platform_.defaults->integerForKey(Keys::SplitSize);
    encodeManager().setSplitTime(splitTime == 0 ? 20 : splitTime);
    encodeManager().setSplitSize(splitSize == 0 ? 10 : splitSize);

    publishLevelViews();
    fillPopups();
    frameChangeAction();
    fpsChangeAction();
    captrueChangeAction();
    connectWindowActions();
    window_->shouldClose = [this] { return homeMainWindowShouldClose(); };
}

void AppDelegate::applicationDidFinishLaunching()
{
    for (const ScreenInfo &screen : platform_.screens->screens())
        NSLog(lcApp, "screen %lld \"%s\"", screen.number, qUtf8Printable(screen.localizedName));
    if (const std::optional<ScreenInfo> main = platform_.screens->mainScreen()) {
        // Screen frames have their origin at the lower left; Qt's at the upper left.
        const QRectF frame = main->frame;
        const QList<ScreenInfo> all = platform_.screens->screens();
        double top = 0;
        for (const ScreenInfo &screen : all)
            top = std::max(top, screen.frame.bottom());
        const double x = frame.x() + (frame.width() - window_->width()) / 2;
        const double y = (top - frame.bottom()) + (frame.height() - window_->height()) / 2;
        window_->move(qRound(x), qRound(y));
    }

    changeLanguage();
    const auto key = [this](const char *hotKeyText) {
        // The last blank-separated word of the stored hot-key text, "⌘ 1" gives "1".
        const QString text = platform_.defaults->stringForKey(QString::fromLatin1(hotKeyText));
        const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return words.isEmpty() ? QString() : words.last();
    };
    statusItem_ = new StatusItem({localizedStringForKey(QStringLiteral("Menu_Edit_Start")),
                                  localizedStringForKey(QStringLiteral("Menu_Edit_Pause")),
                                  localizedStringForKey(QStringLiteral("Menu_Edit_Captrue")),
                                  localizedStringForKey(QStringLiteral("Menu_Edit_ScreenShort")),
                                  localizedStringForKey(QStringLiteral("Menu_Edit_DooleTool"))},
                                 {key("EventStartOrStopChar"), key("EventResumeOrPauseChar"),
                                  key("EventOnOrOffCaptrueChar"), key("EventScreenshotChar"),
                                  key("EventShowDrawToolChar")},
                                 this);
    statusItem_->reopen = [this] { applicationShouldHandleReopen(); };
    statusItem_->dockMenuTitle = [this] {
        return localizedStringForKey(window_->isShownToUser() ? QStringLiteral("hideMain")
                                                              : QStringLiteral("showMain"));
    };
    statusItem_->dockMenuAction = [this] { showHomeMainWindow(); };
    connect(this, &AppDelegate::stateMenuItemsNeedRefresh, this, [this] {
        const bool home = window_->infoView->isHidden();
        const bool running = recordManager()->status() != RecordStatusIdle;
        // The camera and screenshot entries act the other way round from their titles.
        statusItem_->setItemAction(
            0, home ? StatusItem::Action() : [this] { recordScreenClicked(); });
        statusItem_->setItemAction(
            1, home || !running ? StatusItem::Action() : [this] { pauseOrResumeAction(); });
        statusItem_->setItemAction(
            2, home ? StatusItem::Action() : [this] { screenshort(); });
        statusItem_->setItemAction(
            3, home ? StatusItem::Action() : [this] { OnorOffCaptrueCamera(); });
        statusItem_->setItemAction(
            4, home ? StatusItem::Action() : [this] { showDoodleToolAction(); });
        // The menu bar's recording items act on a source, as the tray's do.
        if (auto *edit = window_->mainMenu->findChild<QMenu *>(QStringLiteral("Menu_Edit")))
            edit->menuAction()->setEnabled(!home);
    });
    window_->show();
    // Once the window shows, so the message about a recording cut short stands over it.
    QMetaObject::invokeMethod(
        this, [this] { recoverInterruptedRecording(); }, Qt::QueuedConnection);
}

void AppDelegate::showHomeMainWindow()
{
    window_->setShownToUser(!window_->isShownToUser());
}

bool AppDelegate::applicationShouldHandleReopen()
{
    if (window_->isShownToUser())
        return false;
    showHomeMainWindow();
    return true;
}

bool AppDelegate::homeMainWindowShouldClose()
{
    // Another window of ours still open keeps the program: the main window only hides.
    const QWidgetList windows = QApplication::topLevelWidgets();
    const bool otherVisible = std::any_of(windows.cbegin(), windows.cend(), [this](QWidget *w) {
        // Windows the window manager does not manage (the tray icon's own, overlays) are
        // no windows a user could close.
        return w != window_ && w->isVisible() && w->isWindow() &&
               !w->testAttribute(Qt::WA_DontShowOnScreen) &&
               !(w->windowFlags() & Qt::BypassWindowManagerHint) && w->windowType() != Qt::Popup &&
               w->windowType() != Qt::ToolTip;
    });
    if (otherVisible || recordManager()->status() == RecordStatusRecording) {
        // After the close has been refused: hiding makes the window anew.
        QMetaObject::invokeMethod(
            this, [this] { showHomeMainWindow(); }, Qt::QueuedConnection);
        return false;
    }
    // The teardown (camera, sound session, both aggregates) runs once the loop ends.
    QCoreApplication::exit(0);
    return true;
}

void AppDelegate::enterFileListAction()
{
    const QString folder = QFileInfo(createoutputPath(true)).absolutePath();
    if (!fileList_) {
        fileList_ = new FileListWindowController(*workspace_, *platform_.alerts);
        fileList_->setAttribute(Qt::WA_DeleteOnClose, false);
    }
    fileList_->setUPData(plistPath(), folder);
    fileList_->show();
    fileList_->raise();
    fileList_->activateWindow();
}
