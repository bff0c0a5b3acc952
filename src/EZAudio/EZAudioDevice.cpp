#include "EZAudioDevice.h"

#include "EZAudioUtilities.h"
#include "Log.h"

#include <cstring>
#include <memory>
#include <vector>

QString EZAudioDevice::description() const
{
    const QString base = QString::asprintf("<EZAudioDevice: %p>", static_cast<const void *>(this));
    return QString::asprintf(
        "%s { deviceID: %i, manufacturer: %s, name: %s, UID: %s, inputChannelCount: %ld, "
        "outputChannelCount: %ld }",
        qUtf8Printable(base), int(deviceID_), qUtf8Printable(manufacturer_), qUtf8Printable(name_),
        qUtf8Printable(UID_), long(inputChannelCount_), long(outputChannelCount_));
}

AudioObjectPropertyAddress
EZAudioDevice::addressForPropertySelector(AudioObjectPropertySelector selector)
{
    return {selector, kAudioObjectPropertyScopeGlobal, kAudioObjectPropertyElementMaster};
}

void EZAudioDevice::enumerateDevicesUsingBlock(AudioHardware &hw, const Block &block)
{
    if (!block)
        return;
    const AudioObjectPropertyAddress address =
        addressForPropertySelector(kAudioHardwarePropertyDevices);
    UInt32 size = 0;
    EZAudioUtilities::checkResult(
        hw.AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, &address, 0, nullptr, &size),
        "Failed to get data size");
    std::vector<AudioDeviceID> ids(size / sizeof(AudioDeviceID) + 1);
    EZAudioUtilities::checkResult(hw.AudioObjectGetPropertyData(kAudioObjectSystemObject, &address,
                                                                0, nullptr, &size, ids.data()),
                                  "Failed to get device IDs for available devices on OSX");
    if (size < sizeof(AudioDeviceID))
        return;
    const size_t count = size / sizeof(AudioDeviceID);
    bool stop = false;
    for (size_t i = 0; i < count; ++i) {
        EZAudioDevice device;
        const AudioDeviceID id = ids[i];
        device.setDeviceID(id);
        device.setManufacturer(manufacturerForDeviceID(hw, id));
        device.setName(namePropertyForDeviceID(hw, id));
        device.setUID(UIDPropertyForDeviceID(hw, id));
        device.setIsBuiltIn(isBuiltInDevice(hw, id));
        device.setInputChannelCount(channelCountForScope(hw, kAudioObjectPropertyScopeInput, id));
        device.setOutputChannelCount(channelCountForScope(hw, kAudioObjectPropertyScopeOutput, id));
        block(device, &stop);
        if (stop)
            break;
    }
}

static QList<EZAudioDevice> collect(AudioHardware &hw,
                                    const std::function<bool(const EZAudioDevice &)> &wanted)
{
    QList<EZAudioDevice> list;
    EZAudioDevice::enumerateDevicesUsingBlock(hw, [&](const EZAudioDevice &device, bool *) {
        if (wanted(device))
            list.append(device);
    });
    return list;
}

QList<EZAudioDevice> EZAudioDevice::devices(AudioHardware &hw)
{
    return collect(hw, [](const EZAudioDevice &) { return true; });
}

QList<EZAudioDevice> EZAudioDevice::inputDevices(AudioHardware &hw)
{
    return collect(hw, [](const EZAudioDevice &d) { return d.inputChannelCount() >= 1; });
}

QList<EZAudioDevice> EZAudioDevice::outputDevices(AudioHardware &hw)
{
    return collect(hw, [](const EZAudioDevice &d) { return d.outputChannelCount() >= 1; });
}

EZAudioDevice EZAudioDevice::currentInputDevice(AudioHardware &hw)
{
    return deviceWithPropertySelector(hw, kAudioHardwarePropertyDefaultInputDevice);
}

EZAudioDevice EZAudioDevice::currentOutputDevice(AudioHardware &hw)
{
    return deviceWithPropertySelector(hw, kAudioHardwarePropertyDefaultOutputDevice);
}

EZAudioDevice EZAudioDevice::deviceWithPropertySelector(AudioHardware &hw,
                                                        AudioObjectPropertySelector selector)
{
    AudioDeviceID id = kAudioObjectUnknown;
    UInt32 size = sizeof id;
    const AudioObjectPropertyAddress address = addressForPropertySelector(selector);
    EZAudioUtilities::checkResult(
        hw.AudioObjectGetPropertyData(kAudioObjectSystemObject, &address, 0, nullptr, &size, &id),
        "Failed to get device device on OSX");
    // isBuiltIn is left unset here on purpose: only the lists fill it.
    EZAudioDevice device;
    device.setDeviceID(id);
    device.setManufacturer(manufacturerForDeviceID(hw, id));
    device.setName(namePropertyForDeviceID(hw, id));
    device.setUID(UIDPropertyForDeviceID(hw, id));
    device.setInputChannelCount(channelCountForScope(hw, kAudioObjectPropertyScopeInput, id));
    device.setOutputChannelCount(channelCountForScope(hw, kAudioObjectPropertyScopeOutput, id));
    return device;
}

QString EZAudioDevice::stringPropertyForSelector(AudioHardware &hw,
                                                 AudioObjectPropertySelector selector,
                                                 AudioDeviceID deviceID)
{
    const AudioObjectPropertyAddress address = addressForPropertySelector(selector);
    CFStringRef string = nullptr;
    UInt32 size = sizeof string;
    const OSStatus status =
        hw.AudioObjectGetPropertyData(deviceID, &address, 0, nullptr, &size, &string);
    std::unique_ptr<QString> owned(string);
    if (status != noErr || !owned)
        return QStringLiteral("?");
    return *owned;
}

qint64 EZAudioDevice::channelCountForScope(AudioHardware &hw, AudioObjectPropertyScope scope,
                                           AudioDeviceID deviceID)
{
    const AudioObjectPropertyAddress address{kAudioDevicePropertyStreamConfiguration, scope,
                                             kAudioObjectPropertyElementMaster};
    // A fixed room of one buffer: a device that needs more answers a size error and
    // takes the fallback below.
    AudioBufferList list{};
    static_assert(sizeof(AudioBufferList) == 24);
    UInt32 size = sizeof list;
    const OSStatus status =
        hw.AudioObjectGetPropertyData(deviceID, &address, 0, nullptr, &size, &list);
    if (status != noErr)
        return scope == kAudioObjectPropertyScopeInput ? 4 : 2;
    const UInt32 fitting = (size - offsetof(AudioBufferList, mBuffers)) / sizeof(AudioBuffer);
    const UInt32 buffers = std::min({list.mNumberBuffers, fitting, UInt32(1)});
    qint64 channels = 0;
    for (UInt32 i = 0; i < buffers; ++i)
        channels += list.mBuffers[i].mNumberChannels;
    return channels;
}

bool EZAudioDevice::isBuiltInDevice(AudioHardware &hw, AudioDeviceID deviceID)
{
    const AudioObjectPropertyAddress address =
        addressForPropertySelector(kAudioDevicePropertyTransportType);
    UInt32 transport = 0;
    UInt32 size = sizeof transport;
    const OSStatus status =
        hw.AudioObjectGetPropertyData(deviceID, &address, 0, nullptr, &size, &transport);
    if (status != noErr) {
        capstan::NSLog(lcAudio, "failed to fetch kAudioDevicePropertyTransportType :%u", deviceID);
        return false;
    }
    return transport == kAudioDeviceTransportTypeBuiltIn;
}

QString EZAudioDevice::manufacturerForDeviceID(AudioHardware &hw, AudioDeviceID deviceID)
{
    return stringPropertyForSelector(hw, kAudioObjectPropertyManufacturer, deviceID);
}

QString EZAudioDevice::namePropertyForDeviceID(AudioHardware &hw, AudioDeviceID deviceID)
{
    return stringPropertyForSelector(hw, kAudioObjectPropertyName, deviceID);
}

QString EZAudioDevice::UIDPropertyForDeviceID(AudioHardware &hw, AudioDeviceID deviceID)
{
    return stringPropertyForSelector(hw, kAudioDevicePropertyDeviceUID, deviceID);
}
