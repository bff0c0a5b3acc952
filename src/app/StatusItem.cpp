#include "StatusItem.h"

#include "Images.h"
#include "Localization.h"
#include "Log.h"

#include <QAction>
#include <QCursor>
#include <QMenu>

using capstan::NSLog;

StatusItem::StatusItem(const std::array<QString, kItemCount> &titles,
                       const std::array<QString, kItemCount> &keyEquivalents, QObject *parent)
    : QObject(parent), icon_(new QSystemTrayIcon(this)), menu_(new QMenu)
{
    menu_->setTitle(Localization::localizedStringForKey(QStringLiteral("Menu_State")));
    for (int index = 0; index < kItemCount; ++index) {
        QAction *action = menu_->addAction(titles.at(size_t(index)));
        // Shown as a hint only: the hot keys themselves are global and handled elsewhere.
        if (!keyEquivalents.at(size_t(index)).isEmpty())
            action->setShortcut(
                QKeySequence(QStringLiteral("Meta+") + keyEquivalents.at(size_t(index))));
        action->setShortcutContext(Qt::WidgetShortcut);
        action->setEnabled(false);
        connect(action, &QAction::triggered, this, [this, index] {
            if (const Action &run = actions_.at(size_t(index)))
                run();
        });
        items_.at(size_t(index)) = action;
    }
    icon_->setIcon(imageNamed(QStringLiteral("icon_18")));
    icon_->setToolTip(QString());
    icon_->setContextMenu(menu_);
    connect(icon_, &QSystemTrayIcon::activated, this, &StatusItem::activated);
    icon_->show();
}

StatusItem::~StatusItem()
{
    delete menu_;
    delete dockMenu_;
}

void StatusItem::setItemAction(int index, Action action)
{
    items_.at(size_t(index))->setEnabled(bool(action));
    actions_.at(size_t(index)) = std::move(action);
}

void StatusItem::setBadgeLabel(const QString &text)
{
    if (text == badge_)
        return;
    badge_ = text;
    icon_->setToolTip(text);
}

void StatusItem::activated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger) {
        NSLog(lcApp, "statusOnClick");
        if (reopen)
            reopen();
        return;
    }
    if (reason != QSystemTrayIcon::MiddleClick || !dockMenuTitle)
        return;
    // Made anew each time, as its one title follows the window's visibility.
    delete dockMenu_;
    dockMenu_ = new QMenu;
    QAction *toggle = dockMenu_->addAction(dockMenuTitle());
    connect(toggle, &QAction::triggered, this, [this] {
        if (dockMenuAction)
            dockMenuAction();
    });
    dockMenu_->popup(QCursor::pos());
}
