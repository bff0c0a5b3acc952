#include "FakeAudioHardware.h"

#include <variant>

FakeAudioHardware::Device FakeAudioHardware::device(AudioObjectID id, const QString &name,
                                                    const QString &uid, QList<UInt32> in,
                                                    QList<UInt32> out, UInt32 transport)
{
    Device d;
    d.id = id;
    d.name = name;
    d.manufacturer = QStringLiteral("Capstan Audio");
    d.uid = uid;
    d.transport = transport;
    d.inputBuffers = std::move(in);
    d.outputBuffers = std::move(out);
    return d;
}

const FakeAudioHardware::Device *FakeAudioHardware::find(AudioObjectID id) const
{
    for (const Device &d : devices)
        if (d.id == id)
            return &d;
    return nullptr;
}

static const QList<UInt32> &buffersOf(const FakeAudioHardware::Device &d,
                                      AudioObjectPropertyScope scope)
{
    return scope == kAudioObjectPropertyScopeInput ? d.inputBuffers : d.outputBuffers;
}

OSStatus FakeAudioHardware::AudioObjectGetPropertyDataSize(
    AudioObjectID objectID, const AudioObjectPropertyAddress &address, UInt32 &outElementCount)
{
    std::lock_guard lock(mutex_);
    if (objectID == kAudioObjectSystemObject &&
        address.mSelector == kAudioHardwarePropertyDevices) {
        if (deviceListSizeStatus != noErr)
            return deviceListSizeStatus;
        outElementCount = UInt32(devices.size());
        return noErr;
    }
    if (objectID == kAudioObjectSystemObject) {
        outElementCount = 1;
        return noErr;
    }
    const Device *d = find(objectID);
    if (!d)
        return kAudioHardwareBadObjectError;
    outElementCount = address.mSelector == kAudioDevicePropertyStreamConfiguration
                          ? UInt32(buffersOf(*d, address.mScope).size())
                          : 1;
    return noErr;
}

OSStatus FakeAudioHardware::AudioObjectGetPropertyData(AudioObjectID objectID,
                                                       const AudioObjectPropertyAddress &address,
                                                       AudioPropertyValue &out)
{
    std::lock_guard lock(mutex_);
    if (objectID == kAudioObjectSystemObject) {
        if (address.mSelector == kAudioHardwarePropertyDevices) {
            if (deviceListStatus != noErr)
                return deviceListStatus;
            AudioObjectIDs ids;
            for (const Device &d : devices)
                ids.append(d.id);
            out = ids;
            return noErr;
        }
        if (address.mSelector == kAudioHardwarePropertyDefaultInputDevice ||
            address.mSelector == kAudioHardwarePropertyDefaultOutputDevice) {
            if (defaultDeviceStatus != noErr)
                return defaultDeviceStatus;
            out = address.mSelector == kAudioHardwarePropertyDefaultInputDevice ? defaultInput
                                                                                : defaultOutput;
            return noErr;
        }
        return kAudioHardwareUnknownPropertyError;
    }
    const Device *d = find(objectID);
    if (!d)
        return kAudioHardwareBadObjectError;
    if (d->failingSelectors.contains(address.mSelector))
        return kAudioHardwareUnspecifiedError;
    return deviceProperty(*d, address, out);
}

OSStatus FakeAudioHardware::deviceProperty(const Device &d,
                                           const AudioObjectPropertyAddress &address,
                                           AudioPropertyValue &out)
{
    switch (address.mSelector) {
    case kAudioObjectPropertyName:
        out = d.name;
        return noErr;
    case kAudioObjectPropertyManufacturer:
        out = d.manufacturer;
        return noErr;
    case kAudioDevicePropertyDeviceUID:
        out = d.uid;
        return noErr;
    case kAudioDevicePropertyTransportType:
        out = AudioTransportType{d.transport};
        return noErr;
    case kAudioDevicePropertyStreamConfiguration:
        out = AudioStreamChannels{buffersOf(d, address.mScope)};
        return noErr;
    default:
        return kAudioHardwareUnknownPropertyError;
    }
}

OSStatus FakeAudioHardware::AudioObjectSetPropertyData(AudioObjectID objectID,
                                                       const AudioObjectPropertyAddress &address,
                                                       const AudioPropertyValue &value)
{
    std::lock_guard lock(mutex_);
    const auto *id = std::get_if<AudioObjectID>(&value);
    if (objectID != kAudioObjectSystemObject || !id)
        return kAudioHardwareBadObjectError;
    if (!find(*id))
        return kAudioHardwareBadObjectError;
    if (address.mSelector == kAudioHardwarePropertyDefaultInputDevice)
        defaultInput = *id;
    else if (address.mSelector == kAudioHardwarePropertyDefaultOutputDevice)
        defaultOutput = *id;
    else
        return kAudioHardwareUnknownPropertyError;
    return noErr;
}

OSStatus FakeAudioHardware::AudioHardwareCreateAggregateDevice(const QVariantMap &description,
                                                               AudioObjectID *outDeviceID)
{
    std::lock_guard lock(mutex_);
    createdAggregates.append(description);
    Device d = device(nextAggregateID++, description.value(QStringLiteral("name")).toString(),
                      description.value(QStringLiteral("uid")).toString(), {2}, {2},
                      kAudioDeviceTransportTypeAggregate);
    devices.append(d);
    *outDeviceID = d.id;
    return noErr;
}

OSStatus FakeAudioHardware::AudioHardwareDestroyAggregateDevice(AudioObjectID deviceID)
{
    std::lock_guard lock(mutex_);
    for (qsizetype i = 0; i < devices.size(); ++i) {
        if (devices[i].id == deviceID) {
            devices.removeAt(i);
            destroyedAggregates.append(deviceID);
            return noErr;
        }
    }
    return kAudioHardwareBadObjectError;
}
