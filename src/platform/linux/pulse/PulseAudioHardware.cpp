#include "PulseAudioHardware.h"

#include "Log.h"
#include "PulseDeviceNaming.h"
#include "PulseModuleArguments.h"

#include <cstring>
#include <thread>
#include <utility>
#include <variant>

namespace {

// Set on the sinks of our aggregates when they are made; the server keeps it for as long as
// the module lives, so an aggregate outlives a crash still recognised.
constexpr char kAggregateProperty[] = "capstan.aggregate";
const QString kRecordingAggregate = QStringLiteral("input"); // a null sink, loopbacks feed it
const QString kPlayingAggregate = QStringLiteral("output");  // a combine sink

// Device reads trust the server's events this long after a round trip showed the cache to be
// current. An enumeration's reads all fall within it; a read later than that syncs again,
// as a read of the system object always does.
constexpr std::chrono::milliseconds kTrustEvents{100};

QString property(const pa_proplist *list, const char *key)
{
    const char *value = list ? pa_proplist_gets(list, key) : nullptr;
    return value ? QString::fromUtf8(value) : QString();
}

UInt32 transportFor(const pulse::DeviceFacts &facts)
{
    switch (pulse::transportOf(facts)) {
    case pulse::Transport::BuiltIn:
        return kAudioDeviceTransportTypeBuiltIn;
    case pulse::Transport::Usb:
        return kAudioDeviceTransportTypeUSB;
    case pulse::Transport::Virtual:
        break;
    }
    return kAudioDeviceTransportTypeVirtual;
}

// What the naming needs of a device, read from the server's answer.
template <typename Info> pulse::DeviceFacts factsOf(const Info *info, pulse::DeviceKind kind)
{
    pulse::DeviceFacts f;
    f.kind = kind;
    f.name = QString::fromUtf8(info->name ? info->name : "");
    f.description = QString::fromUtf8(info->description ? info->description : "");
    if (info->active_port) {
        f.portName = QString::fromUtf8(info->active_port->name ? info->active_port->name : "");
        f.portDescription =
            QString::fromUtf8(info->active_port->description ? info->active_port->description : "");
    }
    f.formFactor = property(info->proplist, PA_PROP_DEVICE_FORM_FACTOR);
    f.bus = property(info->proplist, PA_PROP_DEVICE_BUS);
    f.deviceClass = property(info->proplist, PA_PROP_DEVICE_CLASS);
    f.factoryName = property(info->proplist, "factory.name");
    // PulseAudio's Bluetooth devices say their profile as "bluetooth.protocol", PipeWire's
    // as "api.bluez5.profile"; ALSA cards as the card's profile.
    for (const char *key :
         {"bluetooth.protocol", "api.bluez5.profile", PA_PROP_DEVICE_PROFILE_NAME}) {
        f.profile = property(info->proplist, key);
        if (!f.profile.isEmpty())
            break;
    }
    return f;
}

QString manufacturerOf(const pa_proplist *list)
{
    const QString vendor = property(list, PA_PROP_DEVICE_VENDOR_NAME);
    return vendor.isEmpty() ? QStringLiteral("?") : vendor;
}

// The module that made a device. PipeWire's pulse server also says it as a property, which
// outlives a server that reports no owner for it.
uint32_t moduleOf(uint32_t ownerModule, const pa_proplist *list)
{
    if (ownerModule != PA_INVALID_INDEX)
        return ownerModule;
    bool ok = false;
    const uint32_t index = property(list, "pulse.module.id").toUInt(&ok);
    return ok ? index : PA_INVALID_INDEX;
}

struct RawSink {
    QString name, description, monitor, manufacturer, aggregate;
    UInt32 channels = 0, transport = 0;
    bool loopback = false; // what is played to it is recorded from its monitor
    uint32_t ownerModule = PA_INVALID_INDEX;
};
struct RawSource {
    QString name, listedName, manufacturer;
    UInt32 channels = 0, transport = 0;
    bool isMonitor = false;
    uint32_t ownerModule = PA_INVALID_INDEX;
};
struct Gathered {
    QList<RawSink> sinks;
    QList<RawSource> sources;
    QString defaultSink, defaultSource, serverName;
    pulse::PulseConnection *connection = nullptr;
};

void onSink(pa_context *, const pa_sink_info *info, int eol, void *data)
{
    auto *g = static_cast<Gathered *>(data);
    if (eol) {
        g->connection->signal();
        return;
    }
    const pulse::DeviceFacts facts = factsOf(info, pulse::DeviceKind::Sink);
    RawSink s;
    s.name = QString::fromUtf8(info->name);
    s.description = pulse::deviceName(facts);
    s.monitor = QString::fromUtf8(info->monitor_source_name ? info->monitor_source_name : "");
    s.channels = info->sample_spec.channels;
    s.transport = transportFor(facts);
    s.loopback = pulse::isLoopbackSink(facts) && !s.monitor.isEmpty();
    s.manufacturer = manufacturerOf(info->proplist);
    s.ownerModule = moduleOf(info->owner_module, info->proplist);
    s.aggregate = property(info->proplist, kAggregateProperty);
    g->sinks.append(s);
}

void onSource(pa_context *, const pa_source_info *info, int eol, void *data)
{
    auto *g = static_cast<Gathered *>(data);
    if (eol) {
        g->connection->signal();
        return;
    }
    RawSource s;
    s.name = QString::fromUtf8(info->name);
    s.isMonitor = info->monitor_of_sink != PA_INVALID_INDEX;
    const pulse::DeviceFacts facts =
        factsOf(info, s.isMonitor ? pulse::DeviceKind::Monitor : pulse::DeviceKind::Source);
    s.listedName = pulse::deviceName(facts);
    s.channels = info->sample_spec.channels;
    s.transport = transportFor(facts);
    s.manufacturer = manufacturerOf(info->proplist);
    s.ownerModule = moduleOf(info->owner_module, info->proplist);
    g->sources.append(s);
}

void onServer(pa_context *, const pa_server_info *info, void *data)
{
    auto *g = static_cast<Gathered *>(data);
    g->defaultSink = QString::fromUtf8(info->default_sink_name ? info->default_sink_name : "");
    g->defaultSource =
        QString::fromUtf8(info->default_source_name ? info->default_source_name : "");
    g->serverName = QString::fromUtf8(info->server_name ? info->server_name : "");
    g->connection->signal();
}

} // namespace

PulseAudioHardware::PulseAudioHardware()
{
    // A server back after it went away knows nothing of our subscription, and everything
    // read from the old one is stale.
    connection_.setReconnectedCallback([this](pa_context *c) {
        subscribeLocked(c, [](pa_context *, int success, void *self) {
            auto *hardware = static_cast<PulseAudioHardware *>(self);
            hardware->subscribed_ = success != 0;
            hardware->changes_.fetch_add(1);
        });
        changes_.fetch_add(1);
    });
    if (!connection_.isReady())
        return;
    struct Done {
        PulseAudioHardware *hardware;
        bool ok = false;
    } done{this};
    wait([&](pa_context *c) {
        return subscribeLocked(
            c,
            [](pa_context *, int success, void *data) {
                auto *d = static_cast<Done *>(data);
                d->ok = success != 0;
                d->hardware->connection_.signal();
            },
            &done);
    });
    subscribed_ = done.ok;
    if (!subscribed_)
        capstan::NSLog(lcAudio, "the sound server sends no device events: every read asks it");
}

pa_operation *PulseAudioHardware::subscribeLocked(pa_context *c, pa_context_success_cb_t done,
                                                  void *data)
{
    pa_context_set_subscribe_callback(c, &PulseAudioHardware::onServerEvent, this);
    return pa_context_subscribe(c,
                                pa_subscription_mask_t(PA_SUBSCRIPTION_MASK_SINK |
                                                       PA_SUBSCRIPTION_MASK_SOURCE |
                                                       PA_SUBSCRIPTION_MASK_SERVER),
                                done, data ? data : this);
}

void PulseAudioHardware::onServerEvent(pa_context *, pa_subscription_event_type_t, uint32_t,
                                       void *self)
{
    // Runs on the loop's thread; the reader renews the snapshot when it next needs it.
    static_cast<PulseAudioHardware *>(self)->changes_.fetch_add(1);
}

bool PulseAudioHardware::wait(const pulse::PulseConnection::Request &start)
{
    roundTrips_.fetch_add(1);
    return connection_.wait(start);
}

AudioObjectID PulseAudioHardware::idFor(const QString &key)
{
    auto found = ids_.find(key);
    if (found == ids_.end())
        found = ids_.insert(key, AudioObjectID(ids_.size() + 2)); // 1 is the system object
    return found.value();
}

PulseAudioHardware::Snapshot PulseAudioHardware::readServer()
{
    Snapshot shot;
    Gathered g;
    g.connection = &connection_;
    roundTrips_.fetch_add(1);
    if (!connection_.waitAll(
            {[&](pa_context *c) { return pa_context_get_sink_info_list(c, onSink, &g); },
             [&](pa_context *c) { return pa_context_get_source_info_list(c, onSource, &g); },
             [&](pa_context *c) { return pa_context_get_server_info(c, onServer, &g); }}))
        return shot;
    shot.ok = true;
    shot.parser = pulse::argumentParserOf(g.serverName);
    for (const RawSink &s : g.sinks) {
        Device d;
        d.id = idFor(QStringLiteral("sink:") + s.name);
        d.name = s.description;
        d.uid = s.name;
        d.sink = s.name;
        d.manufacturer = s.manufacturer;
        d.transport = s.transport;
        d.outputChannels = s.channels;
        d.ownerModule = s.ownerModule;
        // A null sink is a loopback device: what is played to it is recorded from it.
        if (s.loopback) {
            d.source = s.monitor;
            d.inputChannels = s.channels;
        }
        if (s.aggregate == kRecordingAggregate) { // records the two it joins, plays nothing
            d.outputChannels = 0;
            d.sink.clear();
        }
        if (!s.aggregate.isEmpty())
            d.transport = kAudioDeviceTransportTypeAggregate;
        shot.devices.append(d);
    }
    for (const RawSource &s : g.sources) {
        if (s.isMonitor)
            continue;
        Device d;
        d.id = idFor(QStringLiteral("source:") + s.name);
        d.name = s.listedName;
        d.uid = s.name;
        d.source = s.name;
        d.manufacturer = s.manufacturer;
        d.transport = s.transport;
        d.inputChannels = s.channels;
        d.ownerModule = s.ownerModule;
        shot.devices.append(d);
    }
    shot.defaultSinkName = g.defaultSink;
    shot.defaultSourceName = g.defaultSource;
    for (const Device &d : shot.devices) {
        if (!d.sink.isEmpty() && d.sink == g.defaultSink)
            shot.defaultOutput = d.id;
        if (!d.source.isEmpty() && d.source == g.defaultSource)
            shot.defaultInput = d.id;
    }
    return shot;
}

// Events alone would leave a window: the server posts a change's event a moment after the
// change, so a read right after someone else's change (a `pactl load-module` that has just
// returned) could still find the old snapshot. A round trip closes it, since the server
// sends every event it owes us before its answer, and our loop thread takes them in order.
// It costs a small request where a snapshot costs three large ones; reads of devices lean on
// it for kTrustEvents, so an enumeration makes one round trip, two when something changed.
// Without events every sync takes a snapshot.
const PulseAudioHardware::Snapshot &PulseAudioHardware::currentLocked(Sync sync)
{
    const auto now = std::chrono::steady_clock::now();
    const bool due = sync == Sync::Always || !cacheValid_ || now - syncedAt_ > kTrustEvents;
    if (due && cacheValid_) {
        // The answer names the defaults: PipeWire may tell of a new default after it has
        // answered with it, so the answer itself is compared too.
        Gathered server;
        server.connection = &connection_;
        const bool answered = !subscribed_ || wait([&](pa_context *c) {
            return pa_context_get_server_info(c, onServer, &server);
        });
        cacheValid_ = answered && subscribed_ && server.defaultSink == cache_.defaultSinkName &&
                      server.defaultSource == cache_.defaultSourceName;
        syncedAt_ = now;
    }
    // An event during the reading leaves the count ahead, and the next read reads again.
    const uint64_t changes = changes_.load();
    if (!cacheValid_ || changes != cacheChanges_) {
        cache_ = readServer();
        cacheValid_ = cache_.ok;
        cacheChanges_ = changes;
        syncedAt_ = now;
    }
    return cache_;
}

PulseAudioHardware::Snapshot PulseAudioHardware::snapshot()
{
    std::lock_guard lock(cacheMutex_);
    return currentLocked(Sync::Always);
}

namespace {

OSStatus answerFor(const PulseAudioHardware::Snapshot &shot, AudioObjectID objectID,
                   const AudioObjectPropertyAddress &address, AudioPropertyValue &out)
{
    if (objectID == kAudioObjectSystemObject) {
        switch (address.mSelector) {
        case kAudioHardwarePropertyDevices: {
            // No server: no devices, which is no error.
            AudioObjectIDs ids;
            ids.reserve(shot.devices.size());
            for (const PulseAudioHardware::Device &d : shot.devices)
                ids.append(d.id);
            out = std::move(ids);
            return noErr;
        }
        case kAudioHardwarePropertyDefaultInputDevice:
            out = shot.defaultInput;
            return noErr;
        case kAudioHardwarePropertyDefaultOutputDevice:
            out = shot.defaultOutput;
            return noErr;
        default:
            return kAudioHardwareUnknownPropertyError;
        }
    }
    if (!shot.ok)
        return kAudioHardwareNotRunningError;
    const PulseAudioHardware::Device *device = nullptr;
    for (const PulseAudioHardware::Device &d : shot.devices)
        if (d.id == objectID)
            device = &d;
    if (!device)
        return kAudioHardwareBadObjectError;
    switch (address.mSelector) {
    case kAudioObjectPropertyName:
        out = device->name;
        return noErr;
    case kAudioObjectPropertyManufacturer:
        out = device->manufacturer;
        return noErr;
    case kAudioDevicePropertyDeviceUID:
        out = device->uid;
        return noErr;
    case kAudioDevicePropertyTransportType:
        out = AudioTransportType{device->transport};
        return noErr;
    case kAudioDevicePropertyStreamConfiguration: {
        const UInt32 channels = address.mScope == kAudioObjectPropertyScopeInput
                                    ? device->inputChannels
                                    : device->outputChannels;
        // One buffer with all the channels, or none.
        out = AudioStreamChannels{channels > 0 ? QList<UInt32>{channels} : QList<UInt32>{}};
        return noErr;
    }
    default:
        return kAudioHardwareUnknownPropertyError;
    }
}

UInt32 elementCount(const AudioPropertyValue &value)
{
    if (const auto *ids = std::get_if<AudioObjectIDs>(&value))
        return UInt32(ids->size());
    if (const auto *streams = std::get_if<AudioStreamChannels>(&value))
        return UInt32(streams->perBuffer.size());
    return 1;
}

} // namespace

OSStatus PulseAudioHardware::AudioObjectGetPropertyDataSize(
    AudioObjectID objectID, const AudioObjectPropertyAddress &address, UInt32 &outElementCount)
{
    std::lock_guard lock(cacheMutex_);
    AudioPropertyValue value;
    const OSStatus status =
        answerFor(currentLocked(syncFor(objectID, address)), objectID, address, value);
    if (status == noErr)
        outElementCount = elementCount(value);
    // The list read that follows belongs to the same enumeration: this sync serves it too.
    if (objectID == kAudioObjectSystemObject && address.mSelector == kAudioHardwarePropertyDevices)
        countedList_ = {std::this_thread::get_id(), std::chrono::steady_clock::now()};
    return status;
}

OSStatus PulseAudioHardware::AudioObjectGetPropertyData(AudioObjectID objectID,
                                                        const AudioObjectPropertyAddress &address,
                                                        AudioPropertyValue &out)
{
    std::lock_guard lock(cacheMutex_);
    return answerFor(currentLocked(syncFor(objectID, address)), objectID, address, out);
}

PulseAudioHardware::Sync PulseAudioHardware::syncFor(AudioObjectID objectID,
                                                     const AudioObjectPropertyAddress &address)
{
    if (objectID != kAudioObjectSystemObject)
        return Sync::WhenOld;
    const CountedList counted = std::exchange(countedList_, CountedList{});
    const bool followsItsCount = address.mSelector == kAudioHardwarePropertyDevices &&
                                 counted.thread == std::this_thread::get_id() &&
                                 std::chrono::steady_clock::now() - counted.at < kTrustEvents;
    return followsItsCount ? Sync::WhenOld : Sync::Always;
}

OSStatus PulseAudioHardware::AudioObjectSetPropertyData(AudioObjectID objectID,
                                                        const AudioObjectPropertyAddress &address,
                                                        const AudioPropertyValue &value)
{
    const auto *id = std::get_if<AudioObjectID>(&value);
    if (objectID != kAudioObjectSystemObject || !id)
        return kAudioHardwareBadObjectError;
    const Snapshot shot = snapshot();
    if (!shot.ok)
        return kAudioHardwareNotRunningError;
    for (const Device &d : shot.devices) {
        if (d.id != *id)
            continue;
        const bool input = address.mSelector == kAudioHardwarePropertyDefaultInputDevice;
        const bool output = address.mSelector == kAudioHardwarePropertyDefaultOutputDevice;
        const QByteArray name = (input ? d.source : d.sink).toUtf8();
        if ((!input && !output) || name.isEmpty())
            return kAudioHardwareUnknownPropertyError;
        bool ok = false;
        const auto done = [](pa_context *, int success, void *self) {
            auto *pair = static_cast<std::pair<pulse::PulseConnection *, bool *> *>(self);
            *pair->second = success != 0;
            pair->first->signal();
        };
        std::pair<pulse::PulseConnection *, bool *> state{&connection_, &ok};
        wait([&](pa_context *c) {
            return input ? pa_context_set_default_source(c, name.constData(), done, &state)
                         : pa_context_set_default_sink(c, name.constData(), done, &state);
        });
        changes_.fetch_add(1);
        return ok ? noErr : kAudioHardwareUnspecifiedError;
    }
    return kAudioHardwareBadObjectError;
}

uint32_t PulseAudioHardware::loadModule(const char *name, const QString &arguments)
{
    uint32_t index = PA_INVALID_INDEX;
    std::pair<pulse::PulseConnection *, uint32_t *> state{&connection_, &index};
    const QByteArray args = arguments.toUtf8();
    wait([&](pa_context *c) {
        return pa_context_load_module(
            c, name, args.constData(),
            [](pa_context *, uint32_t idx, void *self) {
                auto *pair = static_cast<std::pair<pulse::PulseConnection *, uint32_t *> *>(self);
                *pair->second = idx;
                pair->first->signal();
            },
            &state);
    });
    changes_.fetch_add(1);
    if (index == PA_INVALID_INDEX)
        capstan::NSLog(lcAudio, "the sound server refused %s %s", name, args.constData());
    return index;
}

bool PulseAudioHardware::unloadModule(uint32_t index)
{
    bool ok = false;
    std::pair<pulse::PulseConnection *, bool *> state{&connection_, &ok};
    wait([&](pa_context *c) {
        return pa_context_unload_module(
            c, index,
            [](pa_context *, int success, void *self) {
                auto *pair = static_cast<std::pair<pulse::PulseConnection *, bool *> *>(self);
                *pair->second = success != 0;
                pair->first->signal();
            },
            &state);
    });
    changes_.fetch_add(1);
    return ok;
}

OSStatus PulseAudioHardware::AudioHardwareCreateAggregateDevice(const QVariantMap &description,
                                                                AudioObjectID *outDeviceID)
{
    const Snapshot shot = snapshot();
    if (!shot.ok)
        return kAudioHardwareNotRunningError;
    const QString name = description.value(QStringLiteral("name")).toString();
    const QString uid = description.value(QStringLiteral("uid")).toString();
    QList<const Device *> parts;
    for (const QVariant &sub : description.value(QStringLiteral("subdevices")).toList()) {
        const QString subUid = sub.toMap().value(QStringLiteral("uid")).toString();
        for (const Device &d : shot.devices)
            if (d.uid == subUid)
                parts.append(&d);
    }
    if (uid.isEmpty() || parts.size() < 2)
        return kAudioHardwareBadObjectError;
    // The name is the user's to see and may hold any character.
    const bool stacked = description.contains(QStringLiteral("stacked"));
    // The description, and the mark that makes it ours: one quoted list, so the mark goes
    // inside the closing quote.
    QString properties =
        pulse::propertyArgument(QStringLiteral(PA_PROP_DEVICE_DESCRIPTION), name, shot.parser);
    properties.insert(
        properties.size() - 1,
        QStringLiteral(" %1=%2").arg(QLatin1String(kAggregateProperty),
                                     stacked ? kPlayingAggregate : kRecordingAggregate));
    const QString sinkName = pulse::argumentValue(uid, shot.parser);
    if (stacked) {
        // Plays to all its parts at once, the first one the clock master.
        QStringList slaves;
        for (const Device *d : parts)
            slaves << d->sink;
        if (slaves.contains(QString()) ||
            loadModule("module-combine-sink",
                       QStringLiteral("sink_name=%1 slaves=%2 sink_properties=%3")
                           .arg(sinkName, pulse::argumentValue(slaves.join(','), shot.parser),
                                properties)) == PA_INVALID_INDEX)
            return kAudioHardwareUnspecifiedError;
    } else {
        // Records all its parts: a null sink that loopbacks feed, its monitor the input.
        if (loadModule("module-null-sink", QStringLiteral("sink_name=%1 sink_properties=%2")
                                               .arg(sinkName, properties)) == PA_INVALID_INDEX)
            return kAudioHardwareUnspecifiedError;
        for (const Device *d : parts) {
            if (d->source.isEmpty() ||
                loadModule("module-loopback",
                           QStringLiteral("source=%1 sink=%2 latency_msec=20 source_dont_move=true "
                                          "sink_dont_move=true")
                               .arg(pulse::argumentValue(d->source, shot.parser), sinkName)) ==
                    PA_INVALID_INDEX) {
                AudioObjectID made = kAudioObjectUnknown;
                for (const Device &n : snapshot().devices)
                    if (n.uid == uid)
                        made = n.id;
                AudioHardwareDestroyAggregateDevice(made);
                return kAudioHardwareUnspecifiedError;
            }
        }
    }
    for (const Device &d : snapshot().devices) {
        if (d.uid == uid) {
            *outDeviceID = d.id;
            return noErr;
        }
    }
    return kAudioHardwareUnspecifiedError;
}

namespace {

struct Module {
    uint32_t index = PA_INVALID_INDEX;
    QString name;
    QStringList arguments; // split at spaces: enough to find "sink=…" and "sink_name=…"
};
struct ModuleList {
    QList<Module> modules;
    pulse::PulseConnection *connection = nullptr;
};

void onModule(pa_context *, const pa_module_info *info, int eol, void *data)
{
    auto *list = static_cast<ModuleList *>(data);
    if (eol) {
        list->connection->signal();
        return;
    }
    list->modules.append({info->index, QString::fromUtf8(info->name ? info->name : ""),
                          QString::fromUtf8(info->argument ? info->argument : "").split(' ')});
}

} // namespace

OSStatus PulseAudioHardware::AudioHardwareDestroyAggregateDevice(AudioObjectID deviceID)
{
    const Snapshot shot = snapshot();
    if (!shot.ok)
        return kAudioHardwareNotRunningError;
    for (const Device &d : shot.devices) {
        if (d.id != deviceID)
            continue;
        if (d.transport != kAudioDeviceTransportTypeAggregate)
            return kAudioHardwareBadObjectError;
        // The loopbacks that feed it go first, found by their arguments: also those of an
        // aggregate a crashed run left behind.
        ModuleList list;
        list.connection = &connection_;
        wait([&](pa_context *c) { return pa_context_get_module_info_list(c, onModule, &list); });
        const QString feeds = QStringLiteral("sink=") + pulse::argumentValue(d.uid, shot.parser);
        const QString made =
            QStringLiteral("sink_name=") + pulse::argumentValue(d.uid, shot.parser);
        uint32_t owner = d.ownerModule;
        for (const Module &m : std::as_const(list.modules)) {
            if (m.name == QLatin1String("module-loopback") && m.arguments.contains(feeds))
                unloadModule(m.index);
            // A server that names no owner: the module that made the sink says its name.
            else if (owner == PA_INVALID_INDEX && m.arguments.contains(made))
                owner = m.index;
        }
        if (owner == PA_INVALID_INDEX)
            return kAudioHardwareBadObjectError;
        return unloadModule(owner) ? noErr : kAudioHardwareUnspecifiedError;
    }
    return kAudioHardwareBadObjectError;
}
