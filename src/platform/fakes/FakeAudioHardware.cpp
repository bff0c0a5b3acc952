#include "FakeAudioHardware.h"

#include <cstring>

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

static UInt32 bufferListSize(qsizetype buffers)
{
    // The header and room for at least one buffer, as the platform's struct has.
    return UInt32(offsetof(AudioBufferList, mBuffers) +
                  sizeof(AudioBuffer) * std::max<qsizetype>(buffers, 1));
}

OSStatus
FakeAudioHardware::AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                                  const AudioObjectPropertyAddress *address, UInt32,
                                                  const void *, UInt32 *outDataSize)
{
    std::lock_guard lock(mutex_);
    if (objectID == kAudioObjectSystemObject &&
        address->mSelector == kAudioHardwarePropertyDevices) {
        if (deviceListSizeStatus != noErr)
            return deviceListSizeStatus;
        *outDataSize = UInt32(devices.size() * sizeof(AudioObjectID));
        return noErr;
    }
    if (objectID == kAudioObjectSystemObject) {
        *outDataSize = sizeof(AudioObjectID);
        return noErr;
    }
    const Device *d = find(objectID);
    if (!d)
        return kAudioHardwareBadObjectError;
    if (address->mSelector == kAudioDevicePropertyStreamConfiguration) {
        const auto &buffers =
            address->mScope == kAudioObjectPropertyScopeInput ? d->inputBuffers : d->outputBuffers;
        *outDataSize = bufferListSize(buffers.size());
        return noErr;
    }
    *outDataSize = address->mSelector == kAudioDevicePropertyTransportType ? sizeof(UInt32)
                                                                           : sizeof(CFStringRef);
    return noErr;
}

OSStatus FakeAudioHardware::AudioObjectGetPropertyData(AudioObjectID objectID,
                                                       const AudioObjectPropertyAddress *address,
                                                       UInt32, const void *, UInt32 *ioDataSize,
                                                       void *outData)
{
    std::lock_guard lock(mutex_);
    if (objectID == kAudioObjectSystemObject) {
        if (address->mSelector == kAudioHardwarePropertyDevices) {
            if (deviceListStatus != noErr)
                return deviceListStatus;
            const UInt32 count =
                std::min<UInt32>(*ioDataSize / sizeof(AudioObjectID), UInt32(devices.size()));
            auto *ids = static_cast<AudioObjectID *>(outData);
            for (UInt32 i = 0; i < count; ++i)
                ids[i] = devices[i].id;
            *ioDataSize = count * sizeof(AudioObjectID);
            return noErr;
        }
        if (address->mSelector == kAudioHardwarePropertyDefaultInputDevice ||
            address->mSelector == kAudioHardwarePropertyDefaultOutputDevice) {
            if (defaultDeviceStatus != noErr)
                return defaultDeviceStatus;
            if (*ioDataSize < sizeof(AudioObjectID))
                return kAudioHardwareBadPropertySizeError;
            const AudioObjectID id = address->mSelector == kAudioHardwarePropertyDefaultInputDevice
                                         ? defaultInput
                                         : defaultOutput;
            std::memcpy(outData, &id, sizeof id);
            *ioDataSize = sizeof id;
            return noErr;
        }
        return kAudioHardwareUnknownPropertyError;
    }
    const Device *d = find(objectID);
    if (!d)
        return kAudioHardwareBadObjectError;
    if (d->failingSelectors.contains(address->mSelector))
        return kAudioHardwareUnspecifiedError;
    return deviceProperty(*d, *address, ioDataSize, outData);
}

OSStatus FakeAudioHardware::deviceProperty(const Device &d,
                                           const AudioObjectPropertyAddress &address,
                                           UInt32 *ioDataSize, void *outData) const
{
    auto giveString = [&](const QString &value) {
        if (*ioDataSize < sizeof(CFStringRef))
            return kAudioHardwareBadPropertySizeError;
        CFStringRef string = new QString(value);
        std::memcpy(outData, &string, sizeof string);
        *ioDataSize = sizeof string;
        return noErr;
    };
    switch (address.mSelector) {
    case kAudioObjectPropertyName:
        return giveString(d.name);
    case kAudioObjectPropertyManufacturer:
        return giveString(d.manufacturer);
    case kAudioDevicePropertyDeviceUID:
        return giveString(d.uid);
    case kAudioDevicePropertyTransportType:
        if (*ioDataSize < sizeof(UInt32))
            return kAudioHardwareBadPropertySizeError;
        std::memcpy(outData, &d.transport, sizeof(UInt32));
        *ioDataSize = sizeof(UInt32);
        return noErr;
    case kAudioDevicePropertyStreamConfiguration: {
        const auto &buffers =
            address.mScope == kAudioObjectPropertyScopeInput ? d.inputBuffers : d.outputBuffers;
        const UInt32 needed = bufferListSize(buffers.size());
        if (*ioDataSize < needed)
            return kAudioHardwareBadPropertySizeError;
        auto *list = static_cast<AudioBufferList *>(outData);
        list->mNumberBuffers = UInt32(buffers.size());
        for (qsizetype i = 0; i < buffers.size(); ++i)
            list->mBuffers[i] = AudioBuffer{buffers[i], 0, nullptr};
        *ioDataSize = needed;
        return noErr;
    }
    default:
        return kAudioHardwareUnknownPropertyError;
    }
}

OSStatus FakeAudioHardware::AudioObjectSetPropertyData(AudioObjectID objectID,
                                                       const AudioObjectPropertyAddress *address,
                                                       UInt32, const void *, UInt32 dataSize,
                                                       const void *data)
{
    std::lock_guard lock(mutex_);
    if (objectID != kAudioObjectSystemObject || dataSize < sizeof(AudioObjectID))
        return kAudioHardwareBadObjectError;
    AudioObjectID id = 0;
    std::memcpy(&id, data, sizeof id);
    if (!find(id))
        return kAudioHardwareBadObjectError;
    if (address->mSelector == kAudioHardwarePropertyDefaultInputDevice)
        defaultInput = id;
    else if (address->mSelector == kAudioHardwarePropertyDefaultOutputDevice)
        defaultOutput = id;
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
