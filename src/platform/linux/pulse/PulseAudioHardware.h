#pragma once
// The audio hardware port on PulseAudio (or PipeWire's pulse server). Sinks are output
// devices and sources input devices; a null sink is one device with both, its monitor
// as the input, as a loopback driver is. Device ids stay the same for a device's name for
// the life of the object.
//
// Reads answer from one snapshot of the server (its sinks, sources and defaults), renewed
// only when the server has told of a change to them, or when this object made one. An
// enumeration starts at the system object, and a read there first makes one round trip to
// the server (the device list's count and the list itself share one): the server sends the
// events of all changes made before it answers, so a change someone made before the
// enumeration began (a plugged device, `pactl`) is always seen. Device reads trust the
// events alone for a short while after that.
//
// Aggregates are null sinks and combine sinks this adapter loaded, marked by a property
// they carry ("capstan.aggregate"), so one a crashed run left behind is still known.
//
// Without a server every call answers kAudioHardwareNotRunningError, and the device
// list is empty: the program runs on without sound. A server that comes back (restarted) is
// subscribed to again and read afresh; device ids stay with their names across it.
#include "AudioHardware.h"
#include "PulseConnection.h"
#include "PulseModuleArguments.h"

#include <QList>
#include <QMap>
#include <QString>
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

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
        // The server's names of its defaults, as its server information gives them.
        QString defaultSinkName, defaultSourceName;
        // How this server reads module arguments (PipeWire's pulse server keeps backslashes).
        pulse::ArgumentParser parser = pulse::ArgumentParser::PulseAudio;
    };
    // What the server has now.
    Snapshot snapshot();
    // Requests this object has waited for, each one round trip to the server.
    int serverRoundTrips() const { return roundTrips_.load(); }

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
    enum class Sync { Always, WhenOld };
    // The snapshot to answer from, renewed first if need be. Needs cacheMutex_.
    const Snapshot &currentLocked(Sync sync);
    // Reads of the system object sync, but for the device list read right after its count.
    // Needs cacheMutex_.
    Sync syncFor(AudioObjectID objectID, const AudioObjectPropertyAddress &address);
    Snapshot readServer();
    AudioObjectID idFor(const QString &key);
    // Waits for one request, counting the round trip.
    bool wait(const pulse::PulseConnection::Request &start);
    // Under the loop's lock: asks the server for device events; done gets data, else this.
    pa_operation *subscribeLocked(pa_context *c, pa_context_success_cb_t done,
                                  void *data = nullptr);
    uint32_t loadModule(const char *name, const QString &arguments);
    bool unloadModule(uint32_t index);
    static void onServerEvent(pa_context *, pa_subscription_event_type_t, uint32_t, void *self);

    // Declared before the connection so they outlive its loop thread, which writes them.
    std::atomic<uint64_t> changes_{0}; // server events and changes of our own
    std::atomic<int> roundTrips_{0};
    std::atomic<bool> subscribed_{false}; // the server sends device events
    pulse::PulseConnection connection_{"CapstanSoundServer"};

    std::mutex cacheMutex_; // the fields below
    Snapshot cache_;
    bool cacheValid_ = false;
    uint64_t cacheChanges_ = 0; // changes_ when cache_ was asked for
    std::chrono::steady_clock::time_point syncedAt_;
    QMap<QString, AudioObjectID> ids_;
    struct CountedList {
        std::thread::id thread;
        std::chrono::steady_clock::time_point at;
    };
    CountedList countedList_; // the last count of the device list, if nothing read since
};
