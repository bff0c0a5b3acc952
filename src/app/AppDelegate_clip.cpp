// The screenshot button's two entries: the whole main display, or a still clip of a window
// or region; a clip's picture is saved like a screenshot and copied to the clipboard.
#include "AppDelegate.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "TNButton.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

using Localization::localizedStringForKey;

void AppDelegate::connectScreenshotMenu()
{
    TNButton *button = window_->screenShortBtn;
    auto *menu = new QMenu(button);
    menu->setAccessibleDescription(QStringLiteral("screenShortMenu"));
    const auto entry = [this, menu](const QString &key, void (AppDelegate::*action)()) {
        QAction *item = menu->addAction(localizedStringForKey(key));
        item->setObjectName(key);
        connect(item, &QAction::triggered, this, action);
    };
    entry(QStringLiteral("Clip Full Screen"), &AppDelegate::screenshort);
    entry(QStringLiteral("Clip Screen Area"), &AppDelegate::clipScreenArea);
    connect(button, &TNButton::clicked, menu,
            [button, menu] { menu->popup(button->mapToGlobal(QPoint(0, button->height()))); });
}

TNClipScreenManager &AppDelegate::clipScreenManager()
{
    if (!clipScreenManager_) {
        clipScreenManager_ = std::make_unique<TNClipScreenManager>(platform_);
        clipScreenManager_->didClipImage = [this](const QImage &image) {
            if (image.isNull())
                return;
            saveImage(image);
            if (QClipboard *clipboard = QGuiApplication::clipboard())
                clipboard->setImage(image);
        };
    }
    return *clipScreenManager_;
}

void AppDelegate::clipScreenArea()
{
    clipScreenManager().startCapture();
}
