#pragma once
// The audio hardware seen when no sound server can be reached: no devices, and the
// default devices read as unknown, so every list is empty and nothing fails.
#include "AudioHardware.h"

class NullAudioHardware final : public AudioHardware {
public:
    explicit NullAudioHardware(QString reason);
    const QString &reason() const { return reason_; }

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                            const AudioObjectPropertyAddress *address, UInt32,
                                            const void *, UInt32 *outDataSize) override;
    OSStatus AudioObjectGetPropertyData(AudioObjectID objectID,
                                        const AudioObjectPropertyAddress *address, UInt32,
                                        const void *, UInt32 *ioDataSize, void *outData) override;
    OSStatus AudioObjectSetPropertyData(AudioObjectID, const AudioObjectPropertyAddress *, UInt32,
                                        const void *, UInt32, const void *) override;
    OSStatus AudioHardwareCreateAggregateDevice(const QVariantMap &, AudioObjectID *) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID) override;

private:
    QString reason_;
};
