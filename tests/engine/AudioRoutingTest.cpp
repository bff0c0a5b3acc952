// Audio routing against the fake hardware layer: which devices are found, which
// aggregates are built from them, and which defaults each recording type sets.
#include "FakePlatform.h"
#include "FakeSessionHost.h"
#include "RecordingMediaEncoder.h"
#include "TNRecordManager.h"

#include <QTest>
#include <gtest/gtest.h>

namespace RME = RecordingMediaEncoder;
using Device = FakeAudioHardware::Device;

namespace {

Device input(AudioObjectID id, const QString &name, const QString &uid)
{
    return FakeAudioHardware::device(id, name, uid, {2}, {});
}

Device output(AudioObjectID id, const QString &name, const QString &uid)
{
    return FakeAudioHardware::device(id, name, uid, {}, {2});
}

Device loopback()
{
    return FakeAudioHardware::device(20, "BlackHole 2ch", "BlackHole2ch_UID", {2}, {2},
                                     kAudioDeviceTransportTypeVirtual);
}

class AudioRoutingTest : public testing::Test {
protected:
    void SetUp() override { RME::reset(); }

    // A manager on these devices; its construction runs the first routing.
    TNRecordManager &start(const QList<Device> &devices, AudioObjectID defaultOutput = 0)
    {
        fake.audio.devices = devices;
        fake.audio.defaultOutput = defaultOutput;
        manager = std::make_unique<TNRecordManager>(fake.platform(), host);
        // The aggregates are looked up again half a second later: do it now.
        manager->loadMRInputDevice();
        manager->loadMROutPutDevice();
        return *manager;
    }

    static QStringList subdeviceUIDs(const QVariantMap &description)
    {
        QStringList uids;
        for (const QVariant &sub : description.value("subdevices").toList())
            uids << sub.toMap().value("uid").toString();
        return uids;
    }

    FakePlatform fake;
    FakeSessionHost host;
    std::unique_ptr<TNRecordManager> manager;
};

TEST_F(AudioRoutingTest, BuildsBothAggregatesAroundTheLoopbackDevice)
{
    TNRecordManager &m = start({input(10, "Built-in Microphone", "BuiltInMic"), loopback(),
                                output(30, "Built-in Output", "BuiltInSpeakerDevice")});
    ASSERT_EQ(fake.audio.createdAggregates.size(), 2);
    const QVariantMap in = fake.audio.createdAggregates[0];
    EXPECT_EQ(in.value("name"), "MR-InputDevice");
    EXPECT_EQ(in.value("uid"), "MR-InputDevice");
    EXPECT_EQ(subdeviceUIDs(in), QStringList({"BuiltInMic", "BlackHole2ch_UID"}));
    EXPECT_EQ(in.value("master"), "BuiltInMic");
    EXPECT_FALSE(in.contains("stacked"));
    const QVariantMap out = fake.audio.createdAggregates[1];
    EXPECT_EQ(out.value("name"), "MR-OutputDevice");
    EXPECT_EQ(subdeviceUIDs(out), QStringList({"BuiltInSpeakerDevice", "BlackHole2ch_UID"}));
    EXPECT_EQ(out.value("stacked"), 1);
    ASSERT_TRUE(m.aggregateInputDevcie());
    EXPECT_EQ(m.aggregateInputDevcie()->name(), "MR-InputDevice");
    ASSERT_TRUE(m.aggregateOutputDevice());
    // The start changes no system default.
    EXPECT_EQ(fake.audio.defaultOutput, 0u);

    // A second run destroys the live aggregates and makes them again under the same names.
    const AudioObjectID oldIn = m.aggregateInputDevcie()->deviceID();
    const AudioObjectID oldOut = m.aggregateOutputDevice()->deviceID();
    m.prepareDevice();
    EXPECT_EQ(fake.audio.destroyedAggregates, QList<AudioObjectID>({oldIn, oldOut}));
    EXPECT_EQ(fake.audio.createdAggregates.size(), 4);

    // Quitting leaves none behind.
    m.destroyAggregatesAtQuit();
    for (const Device &d : fake.audio.devices)
        EXPECT_FALSE(d.name.startsWith("MR-")) << d.name.toStdString();
}

TEST_F(AudioRoutingTest, MicrophoneIsFoundByNameInTwoPasses)
{
    struct Case {
        const char *name;
        QList<Device> inputs;
        QString chosenInput; // inputDevice after the routing
        QString physical;    // the aggregate's first subdevice; empty: none built
    };
    const Case cases[] = {
        {"a later device named like the first one replaces it",
         {input(10, "Built-in Microphone", "mic1"), input(11, "Built-in Microphone 2", "mic2"),
          loopback()},
         "Built-in Microphone",
         "mic2"},
        {"a USB microphone is taken by its ending, then the loopback ends the walk",
         {input(12, "USB Microphone", "usb"), loopback()},
         "BlackHole 2ch",
         "BlackHole2ch_UID"},
        // Without the loopback nothing is built, but the microphone is still chosen.
        {"a MacBook microphone matches the ending already",
         {input(13, "MacBook Pro Microphone", "mbp")},
         "MacBook Pro Microphone",
         ""},
        {"Chinese names are recognised", {input(14, "罗技 麦克风", "cn")}, "罗技 麦克风", ""},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        fake.audio.createdAggregates.clear();
        QList<Device> devices = c.inputs;
        devices << output(30, "Built-in Output", "out");
        TNRecordManager &m = start(devices);
        ASSERT_TRUE(m.inputDevice());
        EXPECT_EQ(m.inputDevice()->name(), c.chosenInput);
        EXPECT_EQ(subdeviceUIDs(fake.audio.createdAggregates.value(0)).value(0), c.physical);
    }
}

TEST_F(AudioRoutingTest, EachRecordingTypeSelectsItsDevicesAndAlwaysTheOutputAggregate)
{
    TNRecordManager &m = start({input(10, "Built-in Microphone", "BuiltInMic"), loopback(),
                                output(30, "Built-in Output", "BuiltInSpeakerDevice")});
    const AudioObjectID aggregateIn = m.aggregateInputDevcie()->deviceID();
    const AudioObjectID aggregateOut = m.aggregateOutputDevice()->deviceID();
    struct Case {
        quint64 type;
        AudioObjectID input;
        bool encoderSet; // the sound format is stored for the next recording
    };
    const Case cases[] = {
        {AudioTypeSystem, 20, true},
        {AudioTypeMicphone, 10, true},
        {AudioTypeSystemAndMicphone, aggregateIn, true},
        {AudioTypeNone, aggregateIn, false},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.type);
        m.encodeManager().setAudioBitrate(0);
        EXPECT_EQ(m.switchRecordType(c.type), 0);
        EXPECT_EQ(m.recordAudioType(), c.type);
        EXPECT_EQ(fake.audio.defaultInput, c.input);
        EXPECT_EQ(fake.audio.defaultOutput, aggregateOut);
        EXPECT_EQ(m.encodeManager().audioBitrate(), c.encoderSet ? 12800 : 0);
    }
}

TEST_F(AudioRoutingTest, WithoutTheLoopbackNothingIsBuiltAndTheOutputStays)
{
    TNRecordManager &m = start({input(10, "Built-in Microphone", "BuiltInMic"),
                                output(30, "Built-in Output", "BuiltInSpeakerDevice")},
                               30);
    EXPECT_EQ(m.loadEZAudioInputDevice("Built-in Microphone"), 81);
    EXPECT_TRUE(fake.audio.createdAggregates.isEmpty());
    EXPECT_FALSE(m.hasInstallSoundFlower());
    m.switchRecordType(AudioTypeMicphone);
    EXPECT_EQ(fake.audio.defaultInput, 10u);
    EXPECT_EQ(fake.audio.defaultOutput, 30u);

    // No device at all: code 80, and a quit makes no destroy call.
    fake.audio.devices.clear();
    EXPECT_EQ(m.prepareDevice(QString(), "Built-in Output"), 80);
    m.destroyAggregatesAtQuit();
    EXPECT_TRUE(fake.audio.destroyedAggregates.isEmpty());
}

} // namespace
