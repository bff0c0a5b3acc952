// The sound session, the level meter and the device watch against fake ports.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "RecordingMediaEncoder.h"
#include "TNRecordManager.h"

#include <QTest>
#include <gtest/gtest.h>

#include <limits>

namespace RME = RecordingMediaEncoder;

namespace {

AudioSampleBuffer samples(std::initializer_list<int32_t> values)
{
    AudioSampleBuffer buffer;
    for (int32_t v : values)
        buffer.data.append(reinterpret_cast<const char *>(&v), sizeof(v));
    return buffer;
}

class AudioCaptureTest : public testing::Test {
protected:
    void SetUp() override
    {
        RME::reset();
        fake.audio.devices = {
            FakeAudioHardware::device(10, "Built-in Microphone", "BuiltInMic", {2}, {}),
            FakeAudioHardware::device(20, "BlackHole 2ch", "BlackHole2ch_UID", {2}, {2}),
            FakeAudioHardware::device(30, "Built-in Output", "BuiltInSpeakerDevice", {}, {2}),
        };
        fake.audioInput.names = {"Built-in Microphone", "BlackHole 2ch", "MR-InputDevice"};
        fake.audioInput.defaultName = "Built-in Microphone";
        manager = std::make_unique<TNRecordManager>(fake.platform(), host);
        // The aggregates are listed half a second after they are built: do it now.
        manager->loadMRInputDevice();
        manager->loadMROutPutDevice();
        host.storeDeviceLists(manager->inputDevices(), manager->outputDevices());
    }

    FakePlatform fake;
    FakeSessionHost host;
    std::unique_ptr<TNRecordManager> manager;
};

TEST_F(AudioCaptureTest, LevelIsThePeakScaledToTheViewWithAFloor)
{
    constexpr int32_t fullScale = std::numeric_limits<int32_t>::max();
    constexpr int32_t fullNegative = std::numeric_limits<int32_t>::min();
    const float floor = 0.5f / 34.0f;
    struct Case {
        const char *name;
        double viewHeight;
        AudioSampleBuffer buffer;
        float expected;
    };
    const Case cases[] = {
        {"silence", 68, samples({0, 0, 0, 0}), floor},
        {"no data at all", 68, AudioSampleBuffer{}, floor},
        {"full scale", 68, samples({12, fullScale, -5}), 1.0f},
        {"full scale negative", 68, samples({fullNegative}), 1.0f},
        {"half the view height halves the level", 34, samples({fullNegative}), 0.5f},
        {"no waveform view yet: the floor, even at full scale", 0, samples({fullScale}), floor},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        host.voiceViewSize = QSizeF(300, c.viewHeight);
        manager->audioVolum(c.buffer);
        EXPECT_NEAR(manager->volum(), c.expected, 1e-6);
        EXPECT_NEAR(host.progressOf(LevelBar::Main), c.expected, 1e-6);
    }

    // A locked view keeps every bar where it is: full, through a silent buffer.
    host.voiceViewSize = QSizeF(300, 68);
    manager->audioVolum(samples({fullScale}));
    host.voiceViewLocked = true;
    manager->audioVolum(samples({0}));
    EXPECT_NEAR(host.progressOf(LevelBar::Main), 1.0f, 1e-6);
}

TEST_F(AudioCaptureTest, CameraModeShowsTheLevelOnTheBarsOfTheChosenSources)
{
    host.voiceViewSize = QSizeF(300, 68);
    manager->setRecordVideoType(VideoTypeCamera);
    struct Case {
        quint64 type;
        bool system, micphone;
    };
    for (const Case c :
         {Case{AudioTypeSystem, true, false}, Case{AudioTypeMicphone, false, true},
          Case{AudioTypeSystemAndMicphone, true, true}, Case{AudioTypeNone, false, false}}) {
        SCOPED_TRACE(c.type);
        manager->setRecordAudioType(c.type);
        manager->audioVolum(samples({std::numeric_limits<int32_t>::max()}));
        EXPECT_NEAR(host.progressOf(LevelBar::System), c.system ? 1.0f : 0.0f, 1e-6);
        EXPECT_NEAR(host.progressOf(LevelBar::Micphone), c.micphone ? 1.0f : 0.0f, 1e-6);
    }
}

TEST_F(AudioCaptureTest, SessionOpensTheRoutedDeviceAndRecordsOnlyWhileLive)
{
    manager->switchRecordType(AudioTypeSystem);
    manager->captrueAudioInputEnable(true);
    EXPECT_EQ(fake.audioInput.device, "BlackHole 2ch");
    EXPECT_EQ(fake.audioInput.sampleRate, 44100);
    EXPECT_EQ(fake.audioInput.channels, 2);
    EXPECT_TRUE(fake.audioInput.running);

    fake.audioInput.deliver(samples({1, 2, 3, 4}));
    EXPECT_TRUE(RME::callsNamed("apiEncoderPushAudio").empty()); // idle: metering only
    manager->setRecordVideoType(VideoTypeAudioOnly);
    startRecordingNow(*manager);
    fake.audioInput.deliver(samples({1, 2, 3, 4}));
    EXPECT_EQ(RME::callsNamed("apiEncoderPushAudio").size(), 1u);
    manager->pauseRecording();
    fake.audioInput.deliver(samples({1, 2, 3, 4}));
    EXPECT_EQ(RME::callsNamed("apiEncoderPushAudio").size(), 1u);
    manager->stopRecording();

    manager->captrueAudioInputEnable(false);
    EXPECT_FALSE(fake.audioInput.running);

    // A routed device the capture does not know: the default one. No sound: no session.
    fake.audioInput.names = {"Built-in Microphone"};
    manager->captrueAudioInputEnable(true);
    EXPECT_EQ(fake.audioInput.device, "Built-in Microphone");
    fake.audioInput.calls.clear();
    manager->setRecordAudioType(AudioTypeNone);
    manager->captrueAudioInputEnable(true);
    EXPECT_TRUE(fake.audioInput.calls.filter("start").isEmpty());
}

TEST_F(AudioCaptureTest, VanishedMicrophoneStopsAMicrophoneRecordingAndFallsBack)
{
    manager->switchRecordType(AudioTypeMicphone);
    manager->captrueAudioInputEnable(true);
    startRecordingNow(*manager);
    fake.audio.devices.removeAt(0); // the microphone is unplugged
    manager->checkAudioDevices();   // one round of the watch
    EXPECT_TRUE(host.events.contains("recordScreenClicked"));
    EXPECT_TRUE(host.events.contains("alert:Alert_Mic_Message"));
    EXPECT_EQ(manager->recordAudioType(), AudioTypeSystem);
    EXPECT_EQ(host.storedInputs, manager->inputDevices().size());
    manager->stopRecording();

    // A paused microphone recording only falls back: it is not stopped.
    fake.audio.devices.insert(
        0, FakeAudioHardware::device(10, "Built-in Microphone", "BuiltInMic", {2}, {}));
    manager->checkAudioDevices();
    manager->switchRecordType(AudioTypeMicphone);
    startRecordingNow(*manager);
    manager->pauseRecording();
    host.events.clear();
    fake.audio.devices.removeAt(0);
    manager->checkAudioDevices();
    EXPECT_FALSE(host.events.contains("recordScreenClicked"));
    EXPECT_FALSE(host.events.contains("alert:Alert_Mic_Message"));
    EXPECT_EQ(manager->recordAudioType(), AudioTypeSystem);
    EXPECT_EQ(manager->status(), RecordStatusPaused);
    manager->stopRecording();

    // In any other state it only falls back, once per change.
    host.events.clear();
    manager->switchRecordType(AudioTypeSystemAndMicphone);
    fake.audio.devices.append(FakeAudioHardware::device(11, "USB Audio", "usb", {1}, {}));
    manager->checkAudioDevices();
    EXPECT_FALSE(host.events.contains("alert:Alert_Mic_Message"));
    EXPECT_EQ(manager->recordAudioType(), AudioTypeSystem);
    EXPECT_EQ(host.events.count("storeDeviceLists"), 1);
}

} // namespace
