// The timing button's menus: before a recording, record, screenshot, record after a
// countdown, or record under the stop rule; during one, stop now or after a while.
#include "AppDelegate.h"
#include "EncodeManager.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "Log.h"
#include "SettingsKeys.h"
#include "TNButton.h"
#include "UserDefaults.h"

#include <QMenu>

using capstan::NSLog;
using Localization::localizedStringForKey;

namespace {

constexpr int kStopMenuItems = 5;
// The stop menu's delays, by item (2 to 4).
constexpr double kStopAfterSeconds[] = {600.0, 1200.0, 1800.0};

} // namespace

void AppDelegate::startSetsItemAction()
{
    // Built at each opening, so it is always in the current language. Clearing leaves the
    // submenus, which the menu owns as children: they go too.
    QMenu *box = window_->startSetsItemBox;
    for (QMenu *submenu : box->findChildren<QMenu *>(Qt::FindDirectChildrenOnly))
        submenu->deleteLater();
    box->clear();
    if (encodeManager().isWorking())
        addStopSetsMenu();
    else
        addStartSetsMenu();
    TNButton *button = window_->startSetsBtn;
    box->popup(button->mapToGlobal(QPoint(0, button->height())));
}

void AppDelegate::addStartSetsMenu()
{
    QMenu *menu = window_->startSetsItemBox;
    const auto item = [this](QMenu *into, const char *key, auto action) {
        QAction *entry = into->addAction(localizedStringForKey(QString::fromLatin1(key)));
        entry->setObjectName(QString::fromLatin1(key));
        connect(entry, &QAction::triggered, this, action);
        return entry;
    };
    item(menu, "ID_MAINPOPMENU_RECORD", [this] { startSetsItemChangeAction(1); });
    item(menu, "ID_MAINPOPMENU_SNAPSHOT", [this] { startSetsItemChangeAction(2); });
    QMenu *countdown =
        menu->addMenu(localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_COUNTDOWN")));
    for (const char *key :
         {"ID_MAINPOPMENU_RECORDTIME1", "ID_MAINPOPMENU_RECORDTIME2", "ID_MAINPOPMENU_RECORDTIME3"})
        item(countdown, key,
             [this, key] { countDownAction(localizedStringForKey(QString::fromLatin1(key))); });
    QMenu *autoStop =
        menu->addMenu(localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_AUTOSTOP")));
    for (const char *key : {"ID_MAINPOPMENU_AUTOSTOP_1", "ID_MAINPOPMENU_AUTOSTOP_2"})
        item(autoStop, key,
             [this, key] { autoStopSetsAction(localizedStringForKey(QString::fromLatin1(key))); });
}

void AppDelegate::addStopSetsMenu()
{
    QMenu *menu = window_->startSetsItemBox;
    for (int i = 0; i < kStopMenuItems; ++i) {
        const QString key = QStringLiteral("ID_MENU_STOPRECORD_%1").arg(i);
        QAction *entry = menu->addAction(localizedStringForKey(key));
        entry->setObjectName(key);
        connect(entry, &QAction::triggered, this, [this, i] { startSetsItemChangeAction(i + 1); });
    }
}

void AppDelegate::startSetsItemChangeAction(int index)
{
    if (encodeManager().isWorking()) {
        if (index == 1) {
            recordScreenClicked();
            return;
        }
        // Counted from now; it fires only while the stop rule's time is armed.
        autoStop_StartTime_ = getNowTimeTimestamp();
        if (index >= 2 && index <= 4)
            autoStop_Duration_ = kStopAfterSeconds[index - 2];
        else
            autoStopSetsAction(QString());
        return;
    }
    isShowReverseTime_ = false;
    startSetsItemIndex_ = index - 1;
    platform_.defaults->setInteger(startSetsItemIndex_, QString::fromLatin1(Keys::StartItemIndex));
    if (index == 1)
        recordScreenClicked();
    else if (index == 2)
        screenshort();
}

void AppDelegate::countDownAction(const QString &title)
{
    isShowReverseTime_ = true;
    const QString key = QString::fromLatin1(Keys::RecordTimeDuration);
    if (title == localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_RECORDTIME1")))
        platform_.defaults->setInteger(3, key);
    else if (title == localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_RECORDTIME2")))
        platform_.defaults->setInteger(5, key);
    else if (title == localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_RECORDTIME3")))
        platform_.defaults->setInteger(10, key);
    // Not recordScreenClicked, which would clear the countdown again.
    recordAfterScreenClicked();
}

void AppDelegate::autoStopSetsAction(const QString &title)
{
    if (title == localizedStringForKey(QStringLiteral("ID_MAINPOPMENU_AUTOSTOP_1"))) {
        recordAfterScreenClicked();
        return;
    }
    NSLog(lcApp, "the stop rule window is not available yet");
}
