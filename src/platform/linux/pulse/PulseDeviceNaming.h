#pragma once
// The names the program's name tests recognise, made from what the sound server says of a
// device. Pure: the adapter reads the server, this decides.
//
// A source on an internal-microphone port is "Built-in Microphone", on a microphone jack
// "External Microphone"; another capture device that is a microphone (a USB or webcam
// microphone, a Bluetooth headset in its headset profile) is its description followed by
// " Microphone". A sink on internal speakers is "Built-in Output", on a headphone port its
// description followed by " Headphones". Everything else, monitors always, keeps its
// description.
//
// What a device is comes from what PulseAudio and PipeWire's pulse server both report
// (properties, names), never from one server's driver strings or module numbers.
#include <QString>

namespace pulse {

enum class DeviceKind { Sink, Source, Monitor };

struct DeviceFacts {
    DeviceKind kind = DeviceKind::Source;
    QString name;            // the server's name: "alsa_input.pci-…", "bluez_source.…"
    QString description;     // device.description
    QString portName;        // the active port, empty without ports
    QString portDescription; // what the port says of itself: "Front Microphone"
    QString formFactor;      // device.form_factor
    QString bus;             // device.bus
    QString profile;         // the Bluetooth profile, or the card's profile
    QString deviceClass;     // device.class: "abstract", "filter", "sound", "monitor"…
    QString factoryName;     // factory.name (PipeWire): "support.null-audio-sink"…
};

QString deviceName(const DeviceFacts &facts);

// A sink that hands what is played to it to its monitor and nowhere else: a loopback device,
// recorded from as an input too. PulseAudio calls a null sink's class "abstract"; PipeWire's
// pulse server says no class and names the factory that made the node.
bool isLoopbackSink(const DeviceFacts &facts);

enum class Transport { BuiltIn, Usb, Virtual };
// By the bus, or when a server leaves it out, by the bus in the ALSA device's name.
Transport transportOf(const DeviceFacts &facts);

} // namespace pulse
