#include "PulseAudioHardware.h"

#include "Log.h"

#include <cstddef>
#include <cstring>
#include <optional>

namespace {

const QString kInputAggregateUID = QStringLiteral("MR-InputDevice");
const QString kOutputAggregateUID = QStringLiteral("MR-OutputDevice");

QString property(const pa_proplist *list, const char *key)
{
    const char *value = list ? pa_proplist_gets(list, key) : nullptr;
    return value ? QString::fromUtf8(value) : QString();
}

UInt32 transportOf(const pa_proplist *list, const QString &driver)
{
    if (driver.contains(QLatin1String("null-sink")))
        return kAudioDeviceTransportTypeVirtual;
    if (driver.contains(QLatin1String("combine")))
        return kAudioDeviceTransportTypeAggregate;
    const QString bus = property(list, PA_PROP_DEVICE_BUS);
    if (bus == QLatin1String("pci") || bus == QLatin1String("platform"))
        return kAudioDeviceTransportTypeBuiltIn;
    if (bus == QLatin1String("usb"))
        return kAudioDeviceTransportTypeUSB;
    return kAudioDeviceTransportTypeVirtual;
}

// Names the system's name tests recognise for real hardware.
QString inputName(const char *description, const char *port, const pa_proplist *list)
{
    const QString text = QString::fromUtf8(description);
    const QString portName = port ? QString::fromUtf8(port) : QString();
    if (portName.contains(QLatin1String("internal-mic")))
        return QStringLiteral("Built-in Microphone");
    if (portName.contains(QLatin1String("input-mic")))
        return QStringLiteral("External Microphone");
    const QString form = property(list, PA_PROP_DEVICE_FORM_FACTOR);
    if (form == QLatin1String("microphone") || form == QLatin1String("headset") ||
        form == QLatin1String("webcam"))
        return text + QStringLiteral(" Microphone");
    return text;
}

QString outputName(const char *description, const char *port)
{
    const QString text = QString::fromUtf8(description);
    const QString portName = port ? QString::fromUtf8(port) : QString();
    if (portName.contains(QLatin1String("output-speaker")))
        return QStringLiteral("Built-in Output");
    if (portName.contains(QLatin1String("headphones")))
        return text + QStringLiteral(" Headphones");
    return text;
}

QString manufacturerOf(const pa_proplist *list)
{
    const QString vendor = property(list, PA_PROP_DEVICE_VENDOR_NAME);
    return vendor.isEmpty() ? QStringLiteral("?") : vendor;
}

struct RawSink {
    QString name, description, port, driver, monitor, manufacturer;
    UInt32 channels = 0, transport = 0;
    uint32_t ownerModule = PA_INVALID_INDEX;
};
struct RawSource {
    QString name, listedName, driver, manufacturer;
    UInt32 channels = 0, transport = 0;
    bool isMonitor = false;
    uint32_t ownerModule = PA_INVALID_INDEX;
};
struct Gathered {
    QList<RawSink> sinks;
    QList<RawSource> sources;
    QString defaultSink, defaultSource;
    pulse::PulseConnection *connection = nullptr;
};

void onSink(pa_context *, const pa_sink_info *info, int eol, void *data)
{
    auto *g = static_cast<Gathered *>(data);
    if (eol) {
        g->connection->signal();
        return;
    }
    RawSink s;
    s.name = QString::fromUtf8(info->name);
    s.description =
        outputName(info->description, info->active_port ? info->active_port->name : nullptr);
    s.driver = QString::fromUtf8(info->driver ? info->driver : "");
    s.monitor = QString::fromUtf8(info->monitor_source_name ? info->monitor_source_name : "");
    s.channels = info->sample_spec.channels;
    s.transport = transportOf(info->proplist, s.driver);
    s.manufacturer = manufacturerOf(info->proplist);
    s.ownerModule = info->owner_module;
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
    s.listedName = inputName(info->description,
                             info->active_port ? info->active_port->name : nullptr, info->proplist);
    s.driver = QString::fromUtf8(info->driver ? info->driver : "");
    s.channels = info->sample_spec.channels;
    s.transport = transportOf(info->proplist, s.driver);
    s.manufacturer = manufacturerOf(info->proplist);
    s.isMonitor = info->monitor_of_sink != PA_INVALID_INDEX;
    s.ownerModule = info->owner_module;
    g->sources.append(s);
}

void onServer(pa_context *, const pa_server_info *info, void *data)
{
    auto *g = static_cast<Gathered *>(data);
    g->defaultSink = QString::fromUtf8(info->default_sink_name ? info->default_sink_name : "");
    g->defaultSource =
        QString::fromUtf8(info->default_source_name ? info->default_source_name : "");
    g->connection->signal();
}

struct Answer {
    OSStatus status = noErr;
    QByteArray bytes;
    std::optional<QString> string; // handed out as a new CFStringRef
};

} // namespace

PulseAudioHardware::PulseAudioHardware() = default;

AudioObjectID PulseAudioHardware::idFor(const QString &key)
{
    std::lock_guard lock(mutex_);
    auto found = ids_.find(key);
    if (found == ids_.end())
        found = ids_.insert(key, AudioObjectID(ids_.size() + 2)); // 1 is the system object
    return found.value();
}

PulseAudioHardware::Snapshot PulseAudioHardware::snapshot()
{
    Snapshot shot;
    Gathered g;
    g.connection = &connection_;
    pa_context *c = connection_.context();
    if (!connection_.waitAll({[&] { return pa_context_get_sink_info_list(c, onSink, &g); },
                              [&] { return pa_context_get_source_info_list(c, onSource, &g); },
                              [&] { return pa_context_get_server_info(c, onServer, &g); }}))
        return shot;
    shot.ok = true;
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
        if (s.driver.contains(QLatin1String("null-sink"))) {
            d.source = s.monitor;
            d.inputChannels = s.channels;
        }
        if (s.name == kInputAggregateUID) { // records the two it joins, plays nothing
            d.outputChannels = 0;
            d.sink.clear();
        }
        if (s.name == kInputAggregateUID || s.name == kOutputAggregateUID)
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
    for (const Device &d : shot.devices) {
        if (!d.sink.isEmpty() && d.sink == g.defaultSink)
            shot.defaultOutput = d.id;
        if (!d.source.isEmpty() && d.source == g.defaultSource)
            shot.defaultInput = d.id;
    }
    return shot;
}

namespace {

Answer answerFor(const PulseAudioHardware::Snapshot &shot, AudioObjectID objectID,
                 const AudioObjectPropertyAddress &address)
{
    Answer a;
    const auto giveId = [&](AudioObjectID id) {
        a.bytes = QByteArray(reinterpret_cast<const char *>(&id), sizeof id);
    };
    if (objectID == kAudioObjectSystemObject) {
        switch (address.mSelector) {
        case kAudioHardwarePropertyDevices:
            // No server: no devices, which is no error.
            for (const PulseAudioHardware::Device &d : shot.devices)
                a.bytes.append(reinterpret_cast<const char *>(&d.id), sizeof d.id);
            return a;
        case kAudioHardwarePropertyDefaultInputDevice:
            giveId(shot.defaultInput);
            return a;
        case kAudioHardwarePropertyDefaultOutputDevice:
            giveId(shot.defaultOutput);
            return a;
        default:
            a.status = kAudioHardwareUnknownPropertyError;
            return a;
        }
    }
    if (!shot.ok) {
        a.status = kAudioHardwareNotRunningError;
        return a;
    }
    const PulseAudioHardware::Device *device = nullptr;
    for (const PulseAudioHardware::Device &d : shot.devices)
        if (d.id == objectID)
            device = &d;
    if (!device) {
        a.status = kAudioHardwareBadObjectError;
        return a;
    }
    switch (address.mSelector) {
    case kAudioObjectPropertyName:
        a.string = device->name;
        break;
    case kAudioObjectPropertyManufacturer:
        a.string = device->manufacturer;
        break;
    case kAudioDevicePropertyDeviceUID:
        a.string = device->uid;
        break;
    case kAudioDevicePropertyTransportType:
        a.bytes = QByteArray(reinterpret_cast<const char *>(&device->transport), sizeof(UInt32));
        break;
    case kAudioDevicePropertyStreamConfiguration: {
        const UInt32 channels = address.mScope == kAudioObjectPropertyScopeInput
                                    ? device->inputChannels
                                    : device->outputChannels;
        // One buffer with all the channels, or none.
        const UInt32 buffers = channels > 0 ? 1 : 0;
        a.bytes = QByteArray(
            int(offsetof(AudioBufferList, mBuffers) + buffers * sizeof(AudioBuffer)), '\0');
        auto *list = reinterpret_cast<AudioBufferList *>(a.bytes.data());
        list->mNumberBuffers = buffers;
        if (buffers)
            list->mBuffers[0] = AudioBuffer{channels, 0, nullptr};
        break;
    }
    default:
        a.status = kAudioHardwareUnknownPropertyError;
    }
    return a;
}

} // namespace

OSStatus
PulseAudioHardware::AudioObjectGetPropertyDataSize(AudioObjectID objectID,
                                                   const AudioObjectPropertyAddress *address,
                                                   UInt32, const void *, UInt32 *outDataSize)
{
    const Answer a = answerFor(snapshot(), objectID, *address);
    if (a.status != noErr)
        return a.status;
    *outDataSize = a.string ? UInt32(sizeof(CFStringRef)) : UInt32(a.bytes.size());
    return noErr;
}

OSStatus PulseAudioHardware::AudioObjectGetPropertyData(AudioObjectID objectID,
                                                        const AudioObjectPropertyAddress *address,
                                                        UInt32, const void *, UInt32 *ioDataSize,
                                                        void *outData)
{
    const Answer a = answerFor(snapshot(), objectID, *address);
    if (a.status != noErr)
        return a.status;
    if (a.string) {
        if (*ioDataSize < sizeof(CFStringRef))
            return kAudioHardwareBadPropertySizeError;
        CFStringRef string = new QString(*a.string);
        std::memcpy(outData, &string, sizeof string);
        *ioDataSize = sizeof string;
        return noErr;
    }
    UInt32 size = UInt32(a.bytes.size());
    if (address->mSelector == kAudioHardwarePropertyDevices && objectID == kAudioObjectSystemObject)
        size = std::min(size, *ioDataSize / UInt32(sizeof(AudioObjectID)) *
                                  UInt32(sizeof(AudioObjectID)));
    else if (*ioDataSize < size)
        return kAudioHardwareBadPropertySizeError;
    std::memcpy(outData, a.bytes.constData(), size);
    *ioDataSize = size;
    return noErr;
}

OSStatus PulseAudioHardware::AudioObjectSetPropertyData(AudioObjectID objectID,
                                                        const AudioObjectPropertyAddress *address,
                                                        UInt32, const void *, UInt32 dataSize,
                                                        const void *data)
{
    if (objectID != kAudioObjectSystemObject || dataSize < sizeof(AudioObjectID))
        return kAudioHardwareBadObjectError;
    AudioObjectID id = 0;
    std::memcpy(&id, data, sizeof id);
    const Snapshot shot = snapshot();
    if (!shot.ok)
        return kAudioHardwareNotRunningError;
    for (const Device &d : shot.devices) {
        if (d.id != id)
            continue;
        const bool input = address->mSelector == kAudioHardwarePropertyDefaultInputDevice;
        const bool output = address->mSelector == kAudioHardwarePropertyDefaultOutputDevice;
        const QByteArray name = (input ? d.source : d.sink).toUtf8();
        if ((!input && !output) || name.isEmpty())
            return kAudioHardwareUnknownPropertyError;
        pa_context *c = connection_.context();
        bool ok = false;
        const auto done = [](pa_context *, int success, void *self) {
            auto *pair = static_cast<std::pair<pulse::PulseConnection *, bool *> *>(self);
            *pair->second = success != 0;
            pair->first->signal();
        };
        std::pair<pulse::PulseConnection *, bool *> state{&connection_, &ok};
        connection_.wait([&] {
            return input ? pa_context_set_default_source(c, name.constData(), done, &state)
                         : pa_context_set_default_sink(c, name.constData(), done, &state);
        });
        return ok ? noErr : kAudioHardwareUnspecifiedError;
    }
    return kAudioHardwareBadObjectError;
}

uint32_t PulseAudioHardware::loadModule(const char *name, const QString &arguments)
{
    uint32_t index = PA_INVALID_INDEX;
    std::pair<pulse::PulseConnection *, uint32_t *> state{&connection_, &index};
    const QByteArray args = arguments.toUtf8();
    connection_.wait([&] {
        return pa_context_load_module(
            connection_.context(), name, args.constData(),
            [](pa_context *, uint32_t idx, void *self) {
                auto *pair = static_cast<std::pair<pulse::PulseConnection *, uint32_t *> *>(self);
                *pair->second = idx;
                pair->first->signal();
            },
            &state);
    });
    if (index == PA_INVALID_INDEX)
        capstan::NSLog(lcAudio, "the sound server refused %s %s", name, args.constData());
    return index;
}

bool PulseAudioHardware::unloadModule(uint32_t index)
{
    bool ok = false;
    std::pair<pulse::PulseConnection *, bool *> state{&connection_, &ok};
    connection_.wait([&] {
        return pa_context_unload_module(
            connection_.context(), index,
            [](pa_context *, int success, void *self) {
                auto *pair = static_cast<std::pair<pulse::PulseConnection *, bool *> *>(self);
                *pair->second = success != 0;
                pair->first->signal();
            },
            &state);
    });
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
    const QString properties =
        QStringLiteral("device.description=\"%1\"").arg(QString(name).replace('"', '\''));
    if (description.contains(QStringLiteral("stacked"))) {
        // Plays to all its parts at once, the first one the clock master.
        QStringList slaves;
        for (const Device *d : parts)
            slaves << d->sink;
        if (slaves.contains(QString()) ||
            loadModule("module-combine-sink",
                       QStringLiteral("sink_name=%1 slaves=%2 sink_properties='%3'")
                           .arg(uid, slaves.join(','), properties)) == PA_INVALID_INDEX)
            return kAudioHardwareUnspecifiedError;
    } else {
        // Records all its parts: a null sink that loopbacks feed, its monitor the input.
        if (loadModule("module-null-sink",
                       QStringLiteral("sink_name=%1 sink_properties='%2'").arg(uid, properties)) ==
            PA_INVALID_INDEX)
            return kAudioHardwareUnspecifiedError;
        for (const Device *d : parts) {
            if (d->source.isEmpty() ||
                loadModule("module-loopback",
                           QStringLiteral("source=%1 sink=%2 latency_msec=20 source_dont_move=true "
                                          "sink_dont_move=true")
                               .arg(d->source, uid)) == PA_INVALID_INDEX) {
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

struct ModuleList {
    QList<QPair<uint32_t, QString>> loopbacks; // index, argument
    pulse::PulseConnection *connection = nullptr;
};

void onModule(pa_context *, const pa_module_info *info, int eol, void *data)
{
    auto *list = static_cast<ModuleList *>(data);
    if (eol) {
        list->connection->signal();
        return;
    }
    if (info->name && std::strcmp(info->name, "module-loopback") == 0)
        list->loopbacks.append(
            {info->index, QString::fromUtf8(info->argument ? info->argument : "")});
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
        if (d.transport != kAudioDeviceTransportTypeAggregate || d.ownerModule == PA_INVALID_INDEX)
            return kAudioHardwareBadObjectError;
        // The loopbacks that feed it go first, found by their arguments: also those of an
        // aggregate a crashed run left behind.
        ModuleList modules;
        modules.connection = &connection_;
        connection_.wait([&] {
            return pa_context_get_module_info_list(connection_.context(), onModule, &modules);
        });
        const QString feeds = QStringLiteral("sink=") + d.uid;
        for (const auto &[index, argument] : modules.loopbacks)
            if (argument.split(' ').contains(feeds))
                unloadModule(index);
        return unloadModule(d.ownerModule) ? noErr : kAudioHardwareUnspecifiedError;
    }
    return kAudioHardwareBadObjectError;
}
