#include "EZAudioDevice.h"
#include "EZAudioUtilities.h"
#include "FakeAudioHardware.h"
#include "LogCapture.h"

#include <gtest/gtest.h>

namespace {

using Device = FakeAudioHardware;

void machine(FakeAudioHardware &hw)
{
    hw.devices = {
        Device::device(10, "Built-in Microphone", "mic", {1}, {}),
        Device::device(11, "Built-in Output", "speakers", {}, {2}),
        Device::device(12, "BlackHole 2ch", "BlackHole2ch_UID", {2}, {2},
                       kAudioDeviceTransportTypeVirtual),
    };
    hw.defaultInput = 10;
    hw.defaultOutput = 11;
}

QStringList uids(const QList<EZAudioDevice> &devices)
{
    QStringList list;
    for (const EZAudioDevice &d : devices)
        list.append(d.UID());
    return list;
}

TEST(EZAudioDevice, ListsSplitByScopeInHardwareOrder)
{
    FakeAudioHardware hw;
    machine(hw);
    EXPECT_EQ(uids(EZAudioDevice::devices(hw)),
              QStringList({"mic", "speakers", "BlackHole2ch_UID"}));
    EXPECT_EQ(uids(EZAudioDevice::inputDevices(hw)), QStringList({"mic", "BlackHole2ch_UID"}));
    EXPECT_EQ(uids(EZAudioDevice::outputDevices(hw)),
              QStringList({"speakers", "BlackHole2ch_UID"}));

    // A device with both scopes stands in both lists, equal by its UID.
    const EZAudioDevice inSide = EZAudioDevice::inputDevices(hw).last();
    const EZAudioDevice outSide = EZAudioDevice::outputDevices(hw).last();
    EXPECT_EQ(inSide, outSide);
    EXPECT_EQ(inSide.inputChannelCount(), 2);
    EXPECT_FALSE(inSide.isBuiltIn());
    EXPECT_TRUE(EZAudioDevice::devices(hw).first().isBuiltIn());
}

TEST(EZAudioDevice, NoDevicesGiveEmptyListsWithoutCallback)
{
    FakeAudioHardware hw;
    int calls = 0;
    EZAudioDevice::enumerateDevicesUsingBlock(hw, [&](const EZAudioDevice &, bool *) { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(EZAudioDevice::inputDevices(hw).isEmpty());
    EXPECT_TRUE(EZAudioDevice::outputDevices(hw).isEmpty());
}

TEST(EZAudioDevice, StopFlagEndsTheWalk)
{
    FakeAudioHardware hw;
    machine(hw);
    QStringList seen;
    EZAudioDevice::enumerateDevicesUsingBlock(hw, [&](const EZAudioDevice &d, bool *stop) {
        seen.append(d.UID());
        *stop = true;
    });
    EXPECT_EQ(seen, QStringList({"mic"}));
    EZAudioDevice::enumerateDevicesUsingBlock(hw, nullptr); // a missing block returns at once
}

TEST(EZAudioDevice, FailedPropertiesDegradeOneField)
{
    FakeAudioHardware hw;
    machine(hw);
    hw.devices[0].failingSelectors = {kAudioObjectPropertyName, kAudioDevicePropertyTransportType};
    // Two stream buffers do not fit the fixed room of one: the fallback counts apply.
    hw.devices[1].outputBuffers = {2, 2};
    hw.devices[1].inputBuffers = {1, 1};
    LogCapture log;
    const QList<EZAudioDevice> all = EZAudioDevice::devices(hw);
    ASSERT_EQ(all.size(), 3);
    EXPECT_EQ(all[0].name(), "?");
    EXPECT_FALSE(all[0].isBuiltIn());
    EXPECT_TRUE(log.contains("failed to fetch kAudioDevicePropertyTransportType :10"));
    EXPECT_EQ(all[1].inputChannelCount(), 4);
    EXPECT_EQ(all[1].outputChannelCount(), 2);
    // ...so a two-buffer output device shows up as an input device too.
    EXPECT_TRUE(uids(EZAudioDevice::inputDevices(hw)).contains("speakers"));
}

TEST(EZAudioDevice, EqualityIsByUIDOnly)
{
    EZAudioDevice a, b;
    a.setUID("same");
    a.setDeviceID(1);
    a.setName("one");
    b.setUID("same");
    b.setDeviceID(2);
    b.setName("two");
    EXPECT_EQ(a, b);
    b.setUID("other");
    EXPECT_FALSE(a == b);
}

TEST(EZAudioDevice, CurrentDevicesAreNeverMarkedBuiltIn)
{
    FakeAudioHardware hw;
    machine(hw);
    const EZAudioDevice input = EZAudioDevice::currentInputDevice(hw);
    const EZAudioDevice output = EZAudioDevice::currentOutputDevice(hw);
    EXPECT_EQ(input.name(), "Built-in Microphone");
    EXPECT_EQ(output.UID(), "speakers");
    EXPECT_EQ(output.outputChannelCount(), 2);
    EXPECT_FALSE(input.isBuiltIn());
}

TEST(EZAudioDevice, DescriptionFormat)
{
    FakeAudioHardware hw;
    machine(hw);
    const EZAudioDevice mic = EZAudioDevice::devices(hw).first();
    const QString text = mic.description();
    EXPECT_TRUE(text.startsWith("<EZAudioDevice: 0x")) << qPrintable(text);
    EXPECT_TRUE(
        text.endsWith(" { deviceID: 10, manufacturer: Capstan Audio, name: Built-in "
                      "Microphone, UID: mic, inputChannelCount: 1, outputChannelCount: 0 }"))
        << qPrintable(text);
}

TEST(EZAudioUtilities, CodeTextQuotesPrintableCodes)
{
    EXPECT_EQ(EZAudioUtilities::codeText(kAudioHardwareBadPropertySizeError), "'!siz'");
    EXPECT_EQ(EZAudioUtilities::codeText(-50), "-50");
}

TEST(EZAudioUtilitiesDeathTest, FailedEnumerationEndsTheProcess)
{
    FakeAudioHardware hw;
    machine(hw);
    hw.deviceListStatus = kAudioHardwareNotRunningError;
    EXPECT_EXIT(EZAudioDevice::devices(hw), testing::ExitedWithCode(255),
                "Error: Failed to get device IDs for available devices on OSX \\('stop'\\)");
    hw.deviceListStatus = noErr;
    hw.defaultDeviceStatus = -1;
    EXPECT_EXIT(EZAudioDevice::currentInputDevice(hw), testing::ExitedWithCode(255),
                "Error: Failed to get device device on OSX \\(-1\\)");
}

TEST(EZAudioUtilities, WithoutExitTheFailureOnlyPrints)
{
    FakeAudioHardware hw;
    machine(hw);
    hw.deviceListSizeStatus = kAudioHardwareNotRunningError;
    hw.deviceListStatus = kAudioHardwareNotRunningError;
    EZAudioUtilities::setShouldExitOnCheckResultFail(false);
    testing::internal::CaptureStderr();
    EXPECT_TRUE(EZAudioDevice::devices(hw).isEmpty());
    const std::string err = testing::internal::GetCapturedStderr();
    EZAudioUtilities::setShouldExitOnCheckResultFail(true);
    EXPECT_NE(err.find("Error: Failed to get data size ('stop')\n"), std::string::npos) << err;
}

} // namespace
