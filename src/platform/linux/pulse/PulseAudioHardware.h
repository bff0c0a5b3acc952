#pragma once
// The audio hardware port on PulseAudio (or PipeWire's pulse server). Sinks are output
// devices and sources input devices; a null sink is one device with both, its monitor
// as the input, as a loopback driver is. Every call reads a fresh snapshot of the
// server; device ids stay the same for a device's name for the life of the object.
//
// Without a server every call answers kAudioHardwareNotRunningError, and the device
// list is empty: the program runs on without sound.
#include "AudioHardware.h"
#include "PulseConnection.h"

#include <QList>
#include <QMap>
#include <QString>
#include <mutex>

class PulseAudioHardware final : public AudioHardware {
public:
    PulseAudioHardware();

    struct Device {
        AudioObjectID id = 0;
        QString name;   // "lnam", as the name tests want it
        QString uid;    // the server's sink or source name
        QString source; // what records it: a source name, or empty
        QString sink;   // what plays to it: a sink name, or empty
        QString manufacturer;
        UInt32 transport = kAudioDeviceTransportTypeVirtual;
        UInt32 inputChannels = 0;
        UInt32 outputChannels = 0;
        uint32_t ownerModule = PA_INVALID_INDEX;
    };
    struct Snapshot {
        bool ok = false;
        QList<Device> devices;
        AudioObjectID defaultInput = kAudioObjectUnknown;
        AudioObjectID defaultOutput = kAudioObjectUnknown;
    };
    // What the server has now.
    Snapshot snapshot();

    OSStatus AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                            const AudioObjectPropertyAddress *address,
                                            UInt32 qualifierDataSize, const void *qualifierData,
                                            UInt32 *outDataSize) override;
    OSStatus AudioObjectGetPropertyData(AudioObjectID objectID,
                                        const AudioObjectPropertyAddress *address,
                                        UInt32 qualifierDataSize, const void *qualifierData,
                                        UInt32 *ioDataSize, void *outData) override;
    OSStatus AudioObjectSetPropertyData(AudioObjectID objectID,
                                        const AudioObjectPropertyAddress *address,
                                        UInt32 qualifierDataSize, const void *qualifierData,
                                        UInt32 dataSize, const void *data) override;
    OSStatus AudioHardwareCreateAggregateDevice(const QVariantMap &description,
                                                AudioObjectID *outDeviceID) override;
    OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID deviceID) override;

private:
    AudioObjectID idFor(const QString &key);
    uint32_t loadModule(const char *name, const QString &arguments);
    bool unloadModule(uint32_t index);

    pulse::PulseConnection connection_{"CapstanSoundServer"};
    std::mutex mutex_; // ids_
    QMap<QString, AudioObjectID> ids_;
};
