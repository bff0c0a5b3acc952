// The timing button's menus on the program with its main window: what they hold before and
// during a recording, and what their items start, store and arm.
#include "CircleCounterView.h"
#include "EncodeManager.h"
#include "MainWindowFixture.h"
#include "SettingsKeys.h"
#include "TNButton.h"
#include "TNRecordScreenWindowController.h"

#include <QMenu>
#include <QTest>

namespace {

class TimingMenuTest : public MainWindowFixture {
protected:
    // Opens the menu as the button does; its entries by object name (the title's key).
    QAction *entry(const QString &key)
    {
        window.startSetsBtn->click();
        QMenu *menu = window.startSetsItemBox;
        for (QAction *action : menu->findChildren<QAction *>()) {
            if (action->objectName() == key) {
                menu->hide();
                return action;
            }
        }
        menu->hide();
        return nullptr;
    }

    QStringList titles(QMenu *menu) const
    {
        QStringList out;
        for (QAction *action : menu->actions())
            out << action->text();
        return out;
    }

    TNRecordManager &manager() { return *app->recordManager(); }
    qint64 stored(const char *key) const
    {
        return fake.defaults.integerForKey(QString::fromLatin1(key));
    }
};

TEST_F(TimingMenuTest, TheStartMenuRecordsAfterTheChosenCountdownOrAtOnce)
{
    app->fullScreenClicked(VideoTypeFullScreen);
    window.startSetsBtn->click();
    QMenu *menu = window.startSetsItemBox;
    EXPECT_EQ(titles(menu), QStringList({"Record", "Screenshot", "Record After Countdown",
                                         "Record with Automatic Stop"}));
    EXPECT_EQ(titles(menu->actions().at(2)->menu()),
              QStringList({"3 Seconds", "5 Seconds", "10 Seconds"}));
    menu->hide();
    // Opened again it is built anew, the old submenus gone.
    window.startSetsBtn->click();
    menu->hide();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(menu->findChildren<QMenu *>().size(), 2);

    // A countdown of 3: stored, and the whole screen counts before it records.
    entry(QStringLiteral("ID_MAINPOPMENU_RECORDTIME1"))->trigger();
    EXPECT_EQ(stored(Keys::RecordTimeDuration), 3);
    EXPECT_TRUE(app->isShowReverseTime());
    ASSERT_FALSE(manager().recordWindowControllerArray().empty());
    auto *overlay = static_cast<TNRecordScreenWindowController *>(
        manager().recordWindowControllerArray()[0].get());
    EXPECT_NE(overlay->recordScreenView()->findChild<CircleCounterView *>(), nullptr);
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle)) << "counting first";
    EXPECT_TRUE(QTest::qWaitFor([&] { return manager().status() == RecordStatusRecording; }, 6000));
    app->recordScreenClicked();
    ASSERT_EQ(manager().status(), quint64(RecordStatusIdle));

    // Record: at once, and no countdown for the recordings after it either.
    entry(QStringLiteral("ID_MAINPOPMENU_RECORD"))->trigger();
    EXPECT_FALSE(app->isShowReverseTime());
    EXPECT_EQ(stored(Keys::StartItemIndex), 0);
    EXPECT_EQ(manager().status(), quint64(RecordStatusRecording));
}

TEST_F(TimingMenuTest, TheStopMenuStopsNowOrArmsADelayedStop)
{
    app->fullScreenClicked(VideoTypeFullScreen);
    app->recordScreenClicked();
    ASSERT_EQ(manager().status(), quint64(RecordStatusRecording));
    app->encodeManager().waitUntilStarted();
    window.startSetsBtn->click();
    EXPECT_EQ(titles(window.startSetsItemBox),
              QStringList({"Stop Now", "Stop in 10 Minutes", "Stop in 20 Minutes",
                           "Stop in 30 Minutes", "Automatic Stop Settings…"}));
    window.startSetsItemBox->hide();

    const double before = app->getNowTimeTimestamp();
    entry(QStringLiteral("ID_MENU_STOPRECORD_2"))->trigger();
    EXPECT_EQ(app->autoStop_Duration(), 1200.0);
    EXPECT_EQ(manager().status(), quint64(RecordStatusRecording));
    entry(QStringLiteral("ID_MENU_STOPRECORD_0"))->trigger();
    EXPECT_EQ(manager().status(), quint64(RecordStatusIdle));
    EXPECT_GE(app->getNowTimeTimestamp(), before);
}

} // namespace
