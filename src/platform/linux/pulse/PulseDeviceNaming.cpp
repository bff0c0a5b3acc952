#include "PulseDeviceNaming.h"

#include <QStringList>

namespace pulse {

namespace {

bool containsAny(const QString &text, const QStringList &parts)
{
    for (const QString &part : parts)
        if (text.contains(part, Qt::CaseInsensitive))
            return true;
    return false;
}

// ALSA mixer paths ("analog-input-front-mic") and UCM devices ("[In] Mic1") on a card.
bool isAlsaInputPort(const QString &port)
{
    return port.startsWith(QLatin1String("analog-input"));
}
bool isUcmInputPort(const QString &port)
{
    return port.startsWith(QLatin1String("[In] "));
}

bool isInternalMicrophonePort(const DeviceFacts &f)
{
    if (isAlsaInputPort(f.portName))
        return f.portName.contains(QLatin1String("internal-mic"));
    // UCM names say nothing of where "Mic1" sits; its comment does ("Internal Microphone",
    // "Digital Microphone" for a laptop's microphone array).
    if (isUcmInputPort(f.portName))
        return containsAny(f.portName, {QStringLiteral("dmic"), QStringLiteral("internal")}) ||
               containsAny(f.portDescription,
                           {QStringLiteral("internal"), QStringLiteral("built-in"),
                            QStringLiteral("digital mic"), QStringLiteral("dmic")});
    return false;
}

// A microphone jack: front, rear, dock, headset, or the card's only one.
bool isMicrophoneJackPort(const DeviceFacts &f)
{
    if (isAlsaInputPort(f.portName))
        return f.portName.contains(QLatin1String("mic"));
    if (isUcmInputPort(f.portName))
        return containsAny(f.portName.mid(5), {QStringLiteral("mic"), QStringLiteral("headset"),
                                               QStringLiteral("handset")}) ||
               f.portDescription.contains(QLatin1String("Microphone"), Qt::CaseInsensitive);
    return false;
}

// "alsa_input.usb-…", "alsa_output.pci-…": the bus as the ALSA device's name carries it.
QString busOf(const DeviceFacts &f)
{
    if (!f.bus.isEmpty())
        return f.bus;
    for (const char *bus : {"pci", "usb", "platform"})
        for (const char *prefix : {"alsa_input.", "alsa_output.", "alsa_card."})
            if (f.name.startsWith(QLatin1String(prefix) + QLatin1String(bus) + QLatin1Char('-')))
                return QLatin1String(bus);
    return {};
}

bool isBluetooth(const DeviceFacts &f)
{
    return f.bus == QLatin1String("bluetooth") || f.name.startsWith(QLatin1String("bluez_"));
}

// The Bluetooth profiles that carry the headset's microphone; PipeWire spells them with
// dashes and a codec suffix ("headset-head-unit-msbc").
bool isHeadsetProfile(const QString &profile)
{
    QString p = profile;
    p.replace('-', '_');
    return p.startsWith(QLatin1String("headset_head_unit")) ||
           p.startsWith(QLatin1String("handsfree_head_unit"));
}

bool isMicrophoneFormFactor(const QString &form)
{
    return form == QLatin1String("microphone") || form == QLatin1String("headset") ||
           form == QLatin1String("hands-free") || form == QLatin1String("webcam");
}

QString withSuffix(const QString &description, const QString &suffix)
{
    // "Yeti Stereo Microphone" is one already; "… Microphone Microphone" helps nobody.
    if (description.endsWith(suffix))
        return description;
    return description + QLatin1Char(' ') + suffix;
}

QString sourceName(const DeviceFacts &f, const QString &text)
{
    // Ports name the sockets of a card inside the machine; a USB or Bluetooth device is
    // never "Built-in", whatever its port is called.
    const bool usb = busOf(f) == QLatin1String("usb");
    const bool external = usb || isBluetooth(f);
    if (!external && isInternalMicrophonePort(f))
        return QStringLiteral("Built-in Microphone");
    if (!external && isMicrophoneJackPort(f))
        return QStringLiteral("External Microphone");
    if (isMicrophoneFormFactor(f.formFactor) || (isBluetooth(f) && isHeadsetProfile(f.profile)))
        return withSuffix(text, QStringLiteral("Microphone"));
    // A USB capture device is a microphone unless its port says it is something else
    // (a line input of a USB sound card).
    if (usb && (f.portName.isEmpty() || isInternalMicrophonePort(f) || isMicrophoneJackPort(f)))
        return withSuffix(text, QStringLiteral("Microphone"));
    return text;
}

QString sinkName(const DeviceFacts &f, const QString &text)
{
    const bool external = busOf(f) == QLatin1String("usb") || isBluetooth(f);
    const QString &port = f.portName;
    if (!external &&
        (port.contains(QLatin1String("output-speaker")) || port == QLatin1String("[Out] Speaker")))
        return QStringLiteral("Built-in Output");
    if (port.contains(QLatin1String("output-headphones")) ||
        port == QLatin1String("[Out] Headphones"))
        return withSuffix(text, QStringLiteral("Headphones"));
    return text;
}

} // namespace

QString deviceName(const DeviceFacts &facts)
{
    const QString text = facts.description.isEmpty() ? facts.name : facts.description;
    switch (facts.kind) {
    case DeviceKind::Source:
        return sourceName(facts, text);
    case DeviceKind::Sink:
        return sinkName(facts, text);
    case DeviceKind::Monitor:
        break; // what a sink plays is never a microphone
    }
    return text;
}

bool isLoopbackSink(const DeviceFacts &facts)
{
    if (facts.kind != DeviceKind::Sink)
        return false;
    return facts.deviceClass == QLatin1String("abstract") ||
           facts.factoryName == QLatin1String("support.null-audio-sink");
}

Transport transportOf(const DeviceFacts &facts)
{
    const QString bus = busOf(facts);
    if (bus == QLatin1String("pci") || bus == QLatin1String("platform"))
        return Transport::BuiltIn;
    if (bus == QLatin1String("usb"))
        return Transport::Usb;
    return Transport::Virtual;
}

} // namespace pulse
