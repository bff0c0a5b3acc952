#include "EZAudioDevice.h"

#include "EZAudioUtilities.h"
#include "Log.h"

#include <algorithm>
#include <variant>

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
    UInt32 count = 0;
    EZAudioUtilities::checkResult(
        hw.AudioObjectGetPropertyDataSize(kAudioObjectSystemObject, address, count),
        "Failed to get data size");
    AudioPropertyValue value;
    EZAudioUtilities::checkResult(
        hw.AudioObjectGetPropertyData(kAudioObjectSystemObject, address, value),
        "Failed to get device IDs for available devices on OSX");
    const auto *ids = std::get_if<AudioObjectIDs>(&value);
    if (!ids)
        return;
    // The walk is bounded by the count asked first: a device that came in between waits
    // for the next enumeration.
    const qsizetype walked = std::min(ids->size(), qsizetype(count));
    bool stop = false;
    for (qsizetype i = 0; i < walked; ++i) {
        EZAudioDevice device;
        const AudioDeviceID id = ids->at(i);
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
    AudioPropertyValue value;
    const AudioObjectPropertyAddress address = addressForPropertySelector(selector);
    EZAudioUtilities::checkResult(
        hw.AudioObjectGetPropertyData(kAudioObjectSystemObject, address, value),
        "Failed to get device device on OSX");
    const auto *found = std::get_if<AudioObjectID>(&value);
    const AudioDeviceID id = found ? *found : kAudioObjectUnknown;
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
    AudioPropertyValue value;
    const OSStatus status =
        hw.AudioObjectGetPropertyData(deviceID, addressForPropertySelector(selector), value);
    const auto *string = std::get_if<QString>(&value);
    if (status != noErr || !string)
        return QStringLiteral("?");
    return *string;
}

qint64 EZAudioDevice::channelCountForScope(AudioHardware &hw, AudioObjectPropertyScope scope,
                                           AudioDeviceID deviceID)
{
    const AudioObjectPropertyAddress address{kAudioDevicePropertyStreamConfiguration, scope,
                                             kAudioObjectPropertyElementMaster};
    AudioPropertyValue value;
    const OSStatus status = hw.AudioObjectGetPropertyData(deviceID, address, value);
    const auto *streams = std::get_if<AudioStreamChannels>(&value);
    // A device of several stream buffers takes the fallback counts too, as it always has:
    // the lists the routing and the settings keep were made that way.
    if (status != noErr || !streams || streams->perBuffer.size() > 1)
        return scope == kAudioObjectPropertyScopeInput ? 4 : 2;
    return streams->perBuffer.isEmpty() ? 0 : qint64(streams->perBuffer.first());
}

bool EZAudioDevice::isBuiltInDevice(AudioHardware &hw, AudioDeviceID deviceID)
{
    AudioPropertyValue value;
    const OSStatus status = hw.AudioObjectGetPropertyData(
        deviceID, addressForPropertySelector(kAudioDevicePropertyTransportType), value);
    const auto *transport = std::get_if<AudioTransportType>(&value);
    if (status != noErr || !transport) {
        capstan::NSLog(lcAudio, "failed to fetch kAudioDevicePropertyTransportType :%u", deviceID);
        return false;
    }
    return transport->type == kAudioDeviceTransportTypeBuiltIn;
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
