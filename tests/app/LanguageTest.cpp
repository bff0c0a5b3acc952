// A language chosen from the menu bar while the program runs: the main window, its pop-ups
// (their choices kept), its menus and tips and the open list window change at once; the tray
// menu keeps the language it was made in. The menu bar's other items act by their tags.
#include "FileListWindowController.h"
#include "MainWindowFixture.h"
#include "SettingsKeys.h"
#include "TNButton.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>

namespace {

using LanguageTest = MainWindowFixture;

QString text(const char *key)
{
    return Localization::localizedStringForKey(QString::fromLatin1(key));
}

QStringList menuTitles(const QMenuBar *bar)
{
    QStringList titles;
    for (const QAction *top : bar->actions()) {
        titles << top->text();
        for (const QAction *item : top->menu()->actions())
            titles << item->text();
    }
    return titles;
}

TEST_F(LanguageTest, AChosenLanguageReachesEveryOpenWindowAtOnceButTheTray)
{
    app->fullScreenClicked(VideoTypeAudioOnly);
    window.audioItemBox->setCurrentIndex(3);
    app->enterFileListAction();
    FileListWindowController *list = app->fileListWindowController();
    ASSERT_TRUE(list);
    const QString trayTitle = app->statusItem()->item(0)->text();
    const QStringList englishMenus = menuTitles(window.mainMenu);
    EXPECT_EQ(app->timeFramStyles().size(), 3);
    bool notified = false;
    QObject::connect(app.get(), &AppDelegate::ChangeLanguageNotification, [&] { notified = true; });

    app->showHelp(202);
    QCoreApplication::processEvents(); // Qt posts its LanguageChange to the windows
    EXPECT_TRUE(notified);
    EXPECT_EQ(fake.defaults.integerForKey(Keys::AppLanguage), 1);
    EXPECT_TRUE(fake.defaults.boolForKey(Keys::IsLanguageChanged));
    EXPECT_EQ(fake.defaults.arrayForKey(Keys::AppleLanguages), QVariantList{"zh_CN"});

    EXPECT_EQ(window.homeButtons.at(0)->text(), QStringLiteral("全屏"));
    EXPECT_EQ(window.homeButtons.at(0)->accessibleName(), QStringLiteral("全屏"));
    EXPECT_EQ(window.audioItemBox->itemText(3), text("Main_Audio_System&Micphone"));
    EXPECT_EQ(window.audioItemBox->currentIndex(), 3) << "the choice is kept";
    // The source pop-up comes back on its first source, whatever the source.
    EXPECT_EQ(window.chooseViewItemBox->currentIndex(), 1);
    EXPECT_EQ(window.chooseViewItemBox->itemText(1), QStringLiteral("全屏"));
    EXPECT_EQ(window.timeSetsBtn->toolTip(), text("timeSetsBtn.toolTip"));
    EXPECT_NE(window.timeSetsBtn->toolTip(), QStringLiteral("timeSetsBtn.toolTip"));
    const QStringList chineseMenus = menuTitles(window.mainMenu);
    ASSERT_EQ(chineseMenus.size(), englishMenus.size());
    EXPECT_EQ(chineseMenus.at(0), text("Menu_Edit"));
    EXPECT_NE(chineseMenus.at(0), englishMenus.at(0));
    EXPECT_EQ(list->windowTitle(), text("FileList"));
    EXPECT_NE(list->windowTitle(), QStringLiteral("Recordings"));
    EXPECT_EQ(app->statusItem()->item(0)->text(), trayTitle);
    EXPECT_EQ(app->timeFramStyles().size(), 5) << "the Chinese time stamps";

    app->showHelp(201);
    QCoreApplication::processEvents();
    EXPECT_EQ(window.homeButtons.at(0)->text(), QStringLiteral("Full Screen"));
    EXPECT_EQ(menuTitles(window.mainMenu), englishMenus);
    EXPECT_EQ(list->windowTitle(), QStringLiteral("Recordings"));
    EXPECT_EQ(app->timeFramStyles().size(), 3);
    EXPECT_EQ(fake.defaults.arrayForKey(Keys::AppleLanguages), QVariantList{"en"});
}

TEST_F(LanguageTest, MenuBarItemsActByTheirTags)
{
    // Every item carries a tag that the dispatch knows.
    for (const QAction *top : window.mainMenu->actions())
        for (const QAction *item : top->menu()->actions())
            EXPECT_GT(item->data().toInt(), 0) << item->objectName().toStdString();

    app->showHelp(100);
    EXPECT_EQ(workspace.urls, QStringList{text("HelpUrl")});

    // Recording items wait for a source, like the tray's; language and help do not.
    const QList<QAction *> tops = window.mainMenu->actions();
    ASSERT_EQ(tops.size(), 3);
    EXPECT_FALSE(tops.at(0)->isEnabled());
    EXPECT_TRUE(tops.at(1)->isEnabled());
    EXPECT_TRUE(tops.at(2)->isEnabled());
    app->fullScreenClicked(VideoTypeFullScreen);
    EXPECT_TRUE(tops.at(0)->isEnabled());
    app->backHomeAction();
    EXPECT_FALSE(tops.at(0)->isEnabled());

    app->fullScreenClicked(VideoTypeFullScreen);
    app->showHelp(401);
    TNRecordManager &manager = *app->recordManager();
    ASSERT_EQ(manager.status(), quint64(RecordStatusRecording));
    // The menu's pause has never paused.
    app->showHelp(402);
    EXPECT_EQ(manager.status(), quint64(RecordStatusRecording));
    app->showHelp(7);
    EXPECT_EQ(manager.status(), quint64(RecordStatusRecording));
    app->showHelp(401);
    EXPECT_EQ(manager.status(), quint64(RecordStatusIdle));
}

} // namespace
