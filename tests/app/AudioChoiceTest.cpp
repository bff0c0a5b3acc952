// The sound choices of the main window: which recording type each pop-up choice gives,
// what is stored, and the alert when a microphone is asked for and none exists.
#include "AppDelegate.h"
#include "FakePlatform.h"
#include "RecordingMediaEncoder.h"

#include <gtest/gtest.h>

namespace {

class AudioChoiceTest : public testing::Test {
protected:
    void SetUp() override
    {
        RecordingMediaEncoder::reset();
        fake.audio.devices = {
            FakeAudioHardware::device(10, "Built-in Microphone", "BuiltInMic", {2}, {}),
            FakeAudioHardware::device(30, "Built-in Output", "BuiltInSpeakerDevice", {}, {2}),
        };
        fake.audioInput.names = {"Built-in Microphone"};
        fake.audioInput.defaultName = "Built-in Microphone";
        app = AppDelegate::create(fake.platform());
    }

    quint64 stored() const { return quint64(fake.defaults.integerForKey("RecordAudioType")); }

    FakePlatform fake;
    std::unique_ptr<AppDelegate> app;
};

TEST_F(AudioChoiceTest, PopUpIndexesGiveTheirTypesAndAreStored)
{
    struct Case {
        int index;
        quint64 type;
        bool sessionRuns;
    };
    const Case cases[] = {{1, AudioTypeSystem, true},
                          {2, AudioTypeMicphone, true},
                          {3, AudioTypeSystemAndMicphone, true},
                          {4, AudioTypeNone, false},
                          {0, AudioTypeNone, false}}; // the blank item is no sound
    for (const Case &c : cases) {
        SCOPED_TRACE(c.index);
        app->audioChangeAction(c.index);
        EXPECT_EQ(app->recordManager()->recordAudioType(), c.type);
        EXPECT_EQ(stored(), c.type);
        EXPECT_EQ(app->audioItemIndex(), c.index);
        EXPECT_EQ(fake.audioInput.isRunning(), c.sessionRuns);
    }
    EXPECT_EQ(app->audioIm(), "btnNotRecordAudio_Normal");
}

TEST_F(AudioChoiceTest, MicrophoneWithoutOneAlertsAndChangesNothing)
{
    app->audioChangeAction(1);
    fake.audio.devices.removeAt(0);
    app->audioChangeAction(2);
    ASSERT_EQ(fake.alerts.messages.size(), 1);
    EXPECT_EQ(app->recordManager()->recordAudioType(), AudioTypeSystem);
    EXPECT_EQ(stored(), AudioTypeSystem);
    EXPECT_EQ(app->audioItemIndex(), 1);
}

TEST_F(AudioChoiceTest, CameraBoxesHaveTablesOfTheirOwn)
{
    struct Case {
        int s, m;
        quint64 bySystemBox, byMicphoneBox;
    };
    const Case cases[] = {
        {1, 1, AudioTypeSystemAndMicphone, AudioTypeSystemAndMicphone},
        {1, 2, AudioTypeSystem, AudioTypeSystem},
        {2, 1, AudioTypeMicphone, AudioTypeNone},
        {2, 2, AudioTypeNone, AudioTypeMicphone},
        {0, 1, AudioTypeNone, AudioTypeNone},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(testing::Message() << c.s << "," << c.m);
        app->systemAudioBoxChange(c.s, c.m);
        EXPECT_EQ(app->recordManager()->recordAudioType(), c.bySystemBox);
        EXPECT_EQ(stored(), c.bySystemBox);
        app->micphoneBoxChange(c.s, c.m);
        EXPECT_EQ(app->recordManager()->recordAudioType(), c.byMicphoneBox);
        EXPECT_EQ(fake.audioInput.isRunning(), c.byMicphoneBox != AudioTypeNone);
    }
    EXPECT_TRUE(fake.alerts.messages.isEmpty());
}

} // namespace
