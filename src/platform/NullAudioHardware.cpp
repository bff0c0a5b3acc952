#include "NullAudioHardware.h"

#include <cstring>

NullAudioHardware::NullAudioHardware(QString reason) : reason_(std::move(reason)) {}

OSStatus
NullAudioHardware::AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                                  const AudioObjectPropertyAddress *address, UInt32,
                                                  const void *, UInt32 *outDataSize)
{
    if (objectID != kAudioObjectSystemObject || !address || !outDataSize)
        return kAudioHardwareBadObjectError;
    switch (address->mSelector) {
    case kAudioHardwarePropertyDevices:
        *outDataSize = 0;
        return noErr;
    case kAudioHardwarePropertyDefaultInputDevice:
    case kAudioHardwarePropertyDefaultOutputDevice:
        *outDataSize = sizeof(AudioObjectID);
        return noErr;
    default:
        return kAudioHardwareUnknownPropertyError;
    }
}

OSStatus NullAudioHardware::AudioObjectGetPropertyData(AudioObjectID objectID,
                                                       const AudioObjectPropertyAddress *address,
                                                       UInt32, const void *, UInt32 *ioDataSize,
                                                       void *outData)
{
    if (objectID != kAudioObjectSystemObject || !address || !ioDataSize)
        return kAudioHardwareBadObjectError;
    switch (address->mSelector) {
    case kAudioHardwarePropertyDevices:
        *ioDataSize = 0;
        return noErr;
    case kAudioHardwarePropertyDefaultInputDevice:
    case kAudioHardwarePropertyDefaultOutputDevice: {
        if (*ioDataSize < sizeof(AudioObjectID) || !outData)
            return kAudioHardwareBadPropertySizeError;
        const AudioObjectID unknown = kAudioObjectUnknown;
        std::memcpy(outData, &unknown, sizeof unknown);
        *ioDataSize = sizeof unknown;
        return noErr;
    }
    default:
        return kAudioHardwareUnknownPropertyError;
    }
}

OSStatus NullAudioHardware::AudioObjectSetPropertyData(AudioObjectID,
                                                       const AudioObjectPropertyAddress *, UInt32,
                                                       const void *, UInt32, const void *)
{
    return kAudioHardwareNotRunningError;
}

OSStatus NullAudioHardware::AudioHardwareCreateAggregateDevice(const QVariantMap &, AudioObjectID *)
{
    return kAudioHardwareNotRunningError;
}

OSStatus NullAudioHardware::AudioHardwareDestroyAggregateDevice(AudioObjectID)
{
    return kAudioHardwareNotRunningError;
}
