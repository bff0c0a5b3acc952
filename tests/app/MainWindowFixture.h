#pragma once
// The program's controller with its main window on fakes of the platform: two screens, the
// first the main one (1920 x 1080 at the origin), the second 1366 x 768 to its right.
#include "AppDelegate.h"
#include "FakePlatform.h"
#include "FakeWorkspace.h"
#include "HomeMainWindow.h"
#include "Localization.h"
#include "RecordingMediaEncoder.h"
#include "StatusItem.h"

#include <QAction>
#include <gtest/gtest.h>

class MainWindowFixture : public testing::Test {
protected:
    void SetUp() override
    {
        RecordingMediaEncoder::reset();
        Localization::installLanguage(QStringLiteral("en"));
        fake.screens.list.append(
            ScreenInfo{QRectF(1920, 0, 1366, 768), 2, QStringLiteral("Fake 2"), 1.0});
        app = AppDelegate::create(fake.platform());
        app->setWorkspace(&workspace);
        app->setWindow(&window);
        app->applicationDidFinishLaunching();
    }

    void TearDown() override
    {
        if (app->recordManager()->status() != RecordStatusIdle)
            app->recordManager()->stopRecording();
    }

    QString movies() const { return fake.folders.movies + QStringLiteral("/Capstan"); }
    QString plist() const { return app->plistPath(); }
    QList<bool> trayEnabled() const
    {
        QList<bool> enabled;
        for (int i = 0; i < StatusItem::kItemCount; ++i)
            enabled << app->statusItem()->item(i)->isEnabled();
        return enabled;
    }

    FakePlatform fake;
    FakeWorkspace workspace;
    HomeMainWindow window;
    std::unique_ptr<AppDelegate> app;
};
