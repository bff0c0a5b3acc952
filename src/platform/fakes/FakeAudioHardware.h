#pragma once
// A scriptable audio hardware layer: a table of devices and the failures to answer.
#include "AudioHardware.h"

#include <QList>
#include <QStringList>
#include <mutex>
#include <optional>

class FakeAudioHardware final : public AudioHardware {
public:
    struct Device {
        AudioObjectID id = 0;
        QString name;
        QString manufacturer;
        QString uid;
        UInt32 transport = kAudioDeviceTransportTypeBuiltIn;
        QList<UInt32> inputBuffers;  // channels per stream buffer
        QList<UInt32> outputBuffers; // channels per stream buffer
        QList<UInt32> failingSelectors;
    };

    QList<Device> devices;
    AudioObjectID defaultInput = kAudioObjectUnknown;
    AudioObjectID defaultOutput = kAudioObjectUnknown;
    OSStatus deviceListSizeStatus = noErr;
    OSStatus deviceListStatus = noErr;
    OSStatus defaultDeviceStatus = noErr;

    // Aggregates made through the port are added as devices with these ids.
    AudioObjectID nextAggregateID = 900;
    QList<QVariantMap> createdAggregates;
    QList<AudioObjectID> destroyedAggregates;

    static Device device(AudioObjectID id, const QString &name, const QString &uid,
                         QList<UInt32> in, QList<UInt32> out,
                         UInt32 transport = kAudioDeviceTransportTypeBuiltIn);

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                            const AudioObjectPropertyAddress &address,
                                            UInt32 &outElementCount) override;
    OSStatus AudioObjectGetPropertyData(AudioObjectID objectID,
                                        const AudioObjectPropertyAddress &address,
                                        AudioPropertyValue &out) override;
    OSStatus AudioObjectSetPropertyData(AudioObjectID objectID,
                                        const AudioObjectPropertyAddress &address,
                                        const AudioPropertyValue &value) override;
    OSStatus AudioHardwareCreateAggregateDevice(const QVariantMap &description,
                                                AudioObjectID *outDeviceID) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID deviceID) override;

private:
    const Device *find(AudioObjectID id) const;
    static OSStatus deviceProperty(const Device &device, const AudioObjectPropertyAddress &address,
                                   AudioPropertyValue &out);
    mutable std::recursive_mutex mutex_;
};
