#pragma once
// The program's place in the panel's tray: the five-item menu, the one-item menu of
// the window's visibility, and the running time as the icon's tool tip.
#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <array>
#include <functional>

class QAction;
class QMenu;

class StatusItem : public QObject {
    Q_OBJECT
public:
    using Action = std::function<void()>;
    static constexpr int kItemCount = 5;

    // The titles are read once: they don't follow later changes of language or hot keys.
    StatusItem(const std::array<QString, kItemCount> &titles,
               const std::array<QString, kItemCount> &keyEquivalents, QObject *parent = nullptr);
    ~StatusItem() override;

    // An item without an action is disabled.
    void setItemAction(int index, Action action);
    QMenu *menu() const { return menu_; }
    QAction *item(int index) const { return items_.at(size_t(index)); }

    // The window menu: a left click reopens, a middle click shows the one-item menu.
    std::function<void()> reopen;
    std::function<QString()> dockMenuTitle;
    std::function<void()> dockMenuAction;
    // The badge: empty clears it.
    void setBadgeLabel(const QString &text);
    QString badgeLabel() const { return badge_; }

private:
    void activated(QSystemTrayIcon::ActivationReason reason);

    QSystemTrayIcon *icon_ = nullptr;
    QMenu *menu_ = nullptr;
    QPointer<QMenu> dockMenu_;
    std::array<QAction *, kItemCount> items_{};
    std::array<Action, kItemCount> actions_{};
    QString badge_;
};
