// The language of the texts and the main menu bar that chooses it: a choice takes effect at
// once, in every open window, without a restart.
#include "AppDelegate.h"

#include "HomeMainWindow.h"
#include "Localization.h"
#include "Log.h"
#include "SettingsKeys.h"
#include "TNButton.h"
#include "UserDefaults.h"
#include "Workspace.h"

#include <QAction>
#include <QMenuBar>

using capstan::NSLog;
using Localization::localizedStringForKey;

void AppDelegate::showHelp(int tag)
{
    switch (tag) {
    case 100:
        if (workspace_)
            workspace_->openURL(localizedStringForKey(QStringLiteral("HelpUrl")));
        break;
    case 201:
        setLange(0);
        break;
    case 202:
        setLange(1);
        break;
    case 401:
        recordScreenClicked();
        break;
    case 402:
        // The menu's pause item has never paused a recording: the window's button and the
        // tray do.
        break;
    case 403:
        screenshort();
        break;
    case 404:
        OnorOffCaptrueCamera();
        break;
    default:
        break;
    }
}

void AppDelegate::setLange(qint64 language)
{
    UserDefaults &defaults = *platform_.defaults;
    defaults.setInteger(language, QString::fromLatin1(Keys::AppLanguage));
    defaults.synchronize();
    // The preferred languages a system would be told, kept in our own store.
    const QString preferred = language == 2   ? QStringLiteral("zh_HK")
                              : language == 1 ? QStringLiteral("zh_CN")
                                              : QStringLiteral("en");
    defaults.setObject(QStringList{preferred}, QString::fromLatin1(Keys::AppleLanguages));
    Localization::setLanguage(defaults);
    emit ChangeLanguageNotification();
    changeLanguage();
}

void AppDelegate::changeLanguage()
{
    buildTimeFramStyles();
    if (!window_)
        return;
    HomeMainWindow &w = *window_;
    w.ChangeLoanguage();
    localizePopups();
    const std::pair<TNButton *, const char *> tips[] = {
        {w.timeSetsBtn, "timeSetsBtn.toolTip"},       {w.splitSetsBtn, "splitSetsBtn.toolTip"},
        {w.screenShortBtn, "screenShortBtn.toolTip"}, {w.setsBtn, "setsBtn.toolTip"},
        {w.pencilBtn, "doodletoolBtn.toolTip"},       {w.fileListBtn, "fileListBtn.toolTip"},
    };
    for (const auto &[button, key] : tips)
        button->setToolTip(localizedStringForKey(QString::fromLatin1(key)));
    NSLog(lcApp, "language %s",
          qUtf8Printable(
              Localization::languageCode(Localization::currentLanguage(*platform_.defaults))));
}
