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
};

QString deviceName(const DeviceFacts &facts);

} // namespace pulse
