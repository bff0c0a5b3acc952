// The rules the timing windows hand over, applied by the controller and acted on by the tick:
// a size rule for one recording stops at its size and is cleared after it, its values kept;
// a rule switched off disarms; a split for one recording goes back to none at its stop.
#include "EncodeManager.h"
#include "MainWindowFixture.h"
#include "SettingsKeys.h"
#include "TNButton.h"

#include <QTest>
#include <thread>

namespace {

using TimedRulesTest = MainWindowFixture;

TEST_F(TimedRulesTest, ASizeRuleForOneRecordingStopsItAtItsSizeAndIsClearedAfter)
{
    AutoTimeSetWindow::Result rule;
    rule.enabled = true;
    rule.isAutoStopOnce = true;
    rule.recordEndTimeDuration = 600;
    rule.recordEndFileSize = 2;
    rule.isRecordEndSizeType = true;
    rule.finshpopIndex = 1;
    app->applyAutoStopRule(rule);
    EXPECT_EQ(fake.defaults.integerForKey(Keys::IsAutoStop), 1);

    app->fullScreenClicked(VideoTypeFullScreen);
    window.recordBtn->click();
    TNRecordManager &manager = *app->recordManager();
    ASSERT_EQ(manager.status(), quint64(RecordStatusRecording));
    const auto tick = [&](int seconds, qint64 bytes) {
        RecordingMediaEncoder::setResult("apiEncoderGetFileSize", bytes);
        std::thread([&] { app->recordScreenTimeDuration(seconds); }).join();
        QTest::qWait(30); // the tick's work reaches this thread
    };
    tick(1, 1'900'000);
    EXPECT_EQ(manager.status(), quint64(RecordStatusRecording)) << "under the size";
    tick(2, 2'100'000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return manager.status() == RecordStatusIdle; }, 2000));

    EXPECT_EQ(fake.defaults.integerForKey(Keys::IsAutoStop), 0) << "for one recording only";
    EXPECT_TRUE(fake.defaults.boolForKey(Keys::AutoStopType));
    EXPECT_EQ(fake.defaults.integerForKey(Keys::AutoStopFileSize), 2);
    // The next recording runs past the size.
    window.recordBtn->click();
    ASSERT_EQ(manager.status(), quint64(RecordStatusRecording));
    tick(1, 5'000'000);
    EXPECT_EQ(manager.status(), quint64(RecordStatusRecording));
    window.recordBtn->click();
}

TEST_F(TimedRulesTest, ARuleSwitchedOffDisarmsAndAOneTimeSplitEndsWithItsRecording)
{
    AutoTimeSetWindow::Result on;
    on.enabled = true;
    on.everyTime = true;
    on.recordEndTimeDuration = 5;
    app->applyAutoStopRule(on);
    EXPECT_TRUE(fake.defaults.boolForKey(Keys::AutoStopEveryTime));
    app->applyAutoStopRule(AutoTimeSetWindow::Result{});
    EXPECT_EQ(fake.defaults.integerForKey(Keys::IsAutoStop), 0);
    EXPECT_FALSE(fake.defaults.boolForKey(Keys::AutoStopEveryTime));

    AutoSplitSetsWindow::Result split;
    split.enabled = true;
    split.isAutoSplitOnce = true;
    split.splitTime = 3;
    split.splitSize = 50;
    split.splitType = 1;
    app->applySplitRule(split);
    EXPECT_EQ(app->encodeManager().splitTime(), 3);
    EXPECT_EQ(app->encodeManager().splitSize(), 50);
    EXPECT_EQ(fake.defaults.integerForKey(Keys::SplitType), 1);
    EXPECT_FALSE(fake.defaults.boolForKey(Keys::SplitAlway));

    app->fullScreenClicked(VideoTypeFullScreen);
    window.recordBtn->click();
    ASSERT_EQ(app->recordManager()->status(), quint64(RecordStatusRecording));
    // The library starts beside the interface: its limits come a moment later.
    EXPECT_TRUE(QTest::qWaitFor(
        [] { return !RecordingMediaEncoder::callsNamed("apiEncoderSetLimitTime").empty(); }, 2000));
    EXPECT_EQ(RecordingMediaEncoder::callsNamed("apiEncoderSetLimitTime").back().args, "3");
    window.recordBtn->click();
    EXPECT_EQ(fake.defaults.integerForKey(Keys::SplitType), 0);
    EXPECT_EQ(fake.defaults.integerForKey(Keys::SplitTime), 3) << "the length is kept";
}

} // namespace
