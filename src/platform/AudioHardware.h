#pragma once
// Port: the audio hardware object calls the device catalog and the routing make.
// Objects are numbered; the system object is 1. Properties are addressed by
// selector, scope and element, each a four-character code.
//
// Values are typed, one alternative of AudioPropertyValue per property:
//   "dev#"                  AudioObjectIDs, the devices in hardware order
//   "dIn ", "dOut"          AudioObjectID
//   "lnam", "lmak", "uid "  QString
//   "slay"                  AudioStreamChannels, the channel count of each stream buffer
//   "tran"                  AudioTransportType
// The size call answers how many elements a property holds: ids for "dev#", buffers for
// "slay", 1 for the others. The catalog asks it first, as the first gate of an enumeration
// and as the bound of the id list it walks.
#include <QList>
#include <QString>
#include <QVariantMap>
#include <cstdint>
#include <variant>

using OSStatus = int32_t;
using UInt32 = uint32_t;
using AudioObjectID = uint32_t;
using AudioDeviceID = AudioObjectID;
using AudioObjectPropertySelector = uint32_t;
using AudioObjectPropertyScope = uint32_t;
using AudioObjectPropertyElement = uint32_t;

constexpr uint32_t fourCharCode(const char (&code)[5])
{
    return (uint32_t(uint8_t(code[0])) << 24) | (uint32_t(uint8_t(code[1])) << 16) |
           (uint32_t(uint8_t(code[2])) << 8) | uint32_t(uint8_t(code[3]));
}

struct AudioObjectPropertyAddress {
    AudioObjectPropertySelector mSelector;
    AudioObjectPropertyScope mScope;
    AudioObjectPropertyElement mElement;
};

using AudioObjectIDs = QList<AudioObjectID>;

struct AudioStreamChannels {
    QList<UInt32> perBuffer; // channels of each stream buffer; none for a scope without streams
    bool operator==(const AudioStreamChannels &) const = default;
};

struct AudioTransportType {
    UInt32 type = 0;
    bool operator==(const AudioTransportType &) const = default;
};

// Empty (monostate) until a read fills it.
using AudioPropertyValue = std::variant<std::monostate, AudioObjectIDs, AudioObjectID, QString,
                                        AudioStreamChannels, AudioTransportType>;

inline constexpr OSStatus noErr = 0;
inline constexpr AudioObjectID kAudioObjectSystemObject = 1;
inline constexpr AudioObjectID kAudioObjectUnknown = 0;
inline constexpr AudioObjectPropertyElement kAudioObjectPropertyElementMaster = 0;

inline constexpr uint32_t kAudioHardwarePropertyDevices = fourCharCode("dev#");
inline constexpr uint32_t kAudioHardwarePropertyDefaultInputDevice = fourCharCode("dIn ");
inline constexpr uint32_t kAudioHardwarePropertyDefaultOutputDevice = fourCharCode("dOut");
inline constexpr uint32_t kAudioObjectPropertyName = fourCharCode("lnam");
inline constexpr uint32_t kAudioObjectPropertyManufacturer = fourCharCode("lmak");
inline constexpr uint32_t kAudioDevicePropertyDeviceUID = fourCharCode("uid ");
inline constexpr uint32_t kAudioDevicePropertyStreamConfiguration = fourCharCode("slay");
inline constexpr uint32_t kAudioDevicePropertyTransportType = fourCharCode("tran");
inline constexpr uint32_t kAudioDeviceTransportTypeBuiltIn = fourCharCode("bltn");
inline constexpr uint32_t kAudioDeviceTransportTypeUSB = fourCharCode("usb ");
inline constexpr uint32_t kAudioDeviceTransportTypeVirtual = fourCharCode("virt");
inline constexpr uint32_t kAudioDeviceTransportTypeAggregate = fourCharCode("grup");
inline constexpr uint32_t kAudioObjectPropertyScopeGlobal = fourCharCode("glob");
inline constexpr uint32_t kAudioObjectPropertyScopeInput = fourCharCode("inpt");
inline constexpr uint32_t kAudioObjectPropertyScopeOutput = fourCharCode("outp");

inline constexpr OSStatus kAudioHardwareUnspecifiedError = OSStatus(fourCharCode("what"));
inline constexpr OSStatus kAudioHardwareUnknownPropertyError = OSStatus(fourCharCode("who?"));
inline constexpr OSStatus kAudioHardwareBadPropertySizeError = OSStatus(fourCharCode("!siz"));
inline constexpr OSStatus kAudioHardwareBadObjectError = OSStatus(fourCharCode("!obj"));
inline constexpr OSStatus kAudioHardwareNotRunningError = OSStatus(fourCharCode("stop"));

class AudioHardware {
public:
    virtual ~AudioHardware() = default;

    // How many elements the property holds (see above).
    virtual OSStatus AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                                    const AudioObjectPropertyAddress &address,
                                                    UInt32 &outElementCount) = 0;
    virtual OSStatus AudioObjectGetPropertyData(AudioObjectID objectID,
                                                const AudioObjectPropertyAddress &address,
                                                AudioPropertyValue &out) = 0;
    // Sets a property; the routing uses it for "dIn " and "dOut" of the system object, with
    // an AudioObjectID. Another kind of value answers kAudioHardwareBadObjectError.
    virtual OSStatus AudioObjectSetPropertyData(AudioObjectID objectID,
                                                const AudioObjectPropertyAddress &address,
                                                const AudioPropertyValue &value) = 0;
    // description: "name", "uid", "subdevices" (a list of maps {"uid": UID}, the first one
    // the physical device), "master" (the first UID), and "stacked" = 1 for a device that
    // plays to all its subdevices at once (an output aggregate); without "stacked" the
    // device records from all its subdevices (an input aggregate).
    virtual OSStatus AudioHardwareCreateAggregateDevice(const QVariantMap &description,
                                                        AudioObjectID *outDeviceID) = 0;
    virtual OSStatus AudioHardwareDestroyAggregateDevice(AudioObjectID deviceID) = 0;
};
