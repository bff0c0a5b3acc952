// The timing button's menus: before a recording, record, screenshot, record after a
// countdown, or record under the stop rule; during one, stop now or after a while. And the
// three windows that set the rules: the stop rule, the plain time limit and the split.
#include "AppDelegate.h"
#include "AutoSplitSetsWindow.h"
#include "AutoTimeSetWindow.h"
#include "EncodeManager.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "Log.h"
#include "SettingsKeys.h"
#include "TNButton.h"
#include "TimeEndWindowColler.h"
#include "UserDefaults.h"

#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

using capstan::NSLog;
using Localization::localizedStringForKey;

namespace {

constexpr int kStopMenuItems = 5;
// The stop menu's delays, by item (2 to 4).
constexpr double kStopAfterSeconds[] = {600.0, 1200.0, 1800.0};

// Runs a rule window modally in the middle of the main screen, lowered by `below`; whether
// it ended with OK. Recording goes on behind it: its ticks are served by the modal loop.
bool runCentred(QDialog &window, int below = 0)
{
    window.adjustSize();
    if (const QScreen *screen = QGuiApplication::primaryScreen()) {
        const QRect area = screen->geometry();
        window.move(area.x() + (area.width() - window.width()) / 2,
                    area.y() + (area.height() - window.height()) / 2 + below);
    }
    return window.exec() == QDialog::Accepted;
}

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
    isCanKeyEvent_ = false;
    AutoTimeSetWindow window(
        {everyTime_, isRecordEndSizeType_, recordEndTimeDuration_, recordEndFileSize_,
         platform_.defaults->integerForKey(QString::fromLatin1(Keys::AutoStopFinshIndex))},
        window_);
    if (runCentred(window) && window.choice())
        applyAutoStopRule(*window.choice());
    isCanKeyEvent_ = true;
}

void AppDelegate::applyAutoStopRule(const AutoTimeSetWindow::Result &rule)
{
    UserDefaults &d = *platform_.defaults;
    if (!rule.enabled) {
        everyTime_ = false;
        autoStop_withTime_ = false;
        isAutoStop_ = false;
        d.setBool(everyTime_, QString::fromLatin1(Keys::AutoStopEveryTime));
        d.setInteger(0, QString::fromLatin1(Keys::IsAutoStop));
        return;
    }
    isAutoStopOnce_ = rule.isAutoStopOnce;
    recordEndTimeDuration_ = rule.recordEndTimeDuration;
    recordEndFileSize_ = rule.recordEndFileSize;
    everyTime_ = rule.everyTime;
    isRecordEndSizeType_ = rule.isRecordEndSizeType;
    finshpopIndex_ = rule.finshpopIndex;
    d.setInteger(qint64(recordEndTimeDuration_), QString::fromLatin1(Keys::AutoStopTime));
    d.setInteger(qint64(recordEndFileSize_), QString::fromLatin1(Keys::AutoStopFileSize));
    d.setBool(isRecordEndSizeType_, QString::fromLatin1(Keys::AutoStopType));
    d.setInteger(finshpopIndex_, QString::fromLatin1(Keys::AutoStopFinshIndex));
    d.setBool(everyTime_, QString::fromLatin1(Keys::AutoStopEveryTime));
    d.setInteger(1, QString::fromLatin1(Keys::IsAutoStop));
    autoStop_withTime_ = true;
}

void AppDelegate::timeSetsAction()
{
    isCanKeyEvent_ = false;
    TimeEndWindowColler window(endTimeType_, recordEndTimeDuration_,
                               recordManager()->recordVideoType() == VideoTypeAudioOnly, window_);
    // Not stored, and no rule is armed: the limit counts under an armed stop rule by time.
    if (runCentred(window, window_->height()) && window.choice()) {
        endTimeType_ = window.choice()->endTimeType;
        recordEndTimeDuration_ = window.choice()->recordEndTimeDuration;
    }
    isCanKeyEvent_ = true;
}

void AppDelegate::autoSplitSetsAction()
{
    isCanKeyEvent_ = false;
    const UserDefaults &d = *platform_.defaults;
    AutoSplitSetsWindow window({encodeManager().splitTime(), encodeManager().splitSize(),
                                d.boolForKey(QString::fromLatin1(Keys::SplitAlway)),
                                d.integerForKey(QString::fromLatin1(Keys::SplitType))},
                               window_);
    if (runCentred(window) && window.choice())
        applySplitRule(*window.choice());
    isCanKeyEvent_ = true;
}

void AppDelegate::applySplitRule(const AutoSplitSetsWindow::Result &rule)
{
    UserDefaults &d = *platform_.defaults;
    if (!rule.enabled) {
        d.setInteger(0, QString::fromLatin1(Keys::SplitType));
        return;
    }
    isAutoSplitOnce_ = rule.isAutoSplitOnce;
    encodeManager().setSplitTime(rule.splitTime);
    encodeManager().setSplitSize(rule.splitSize);
    d.setInteger(rule.splitType, QString::fromLatin1(Keys::SplitType));
    d.setInteger(rule.splitTime, QString::fromLatin1(Keys::SplitTime));
    d.setInteger(rule.splitSize, QString::fromLatin1(Keys::SplitSize));
    d.setBool(rule.splitAlway, QString::fromLatin1(Keys::SplitAlway));
}
