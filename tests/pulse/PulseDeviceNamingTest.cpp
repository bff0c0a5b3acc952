// Device names from what real machines' sound servers report, PulseAudio's and PipeWire's
// pulse server's: every microphone is one the routing recognises, nothing else is, and
// monitors never are; loopback devices and buses are known by what both servers say.
#include "PulseDeviceNaming.h"
#include "AudioDeviceNames.h"

#include <gtest/gtest.h>

// The cases name only the facts a server reports; the others stay empty, as meant.
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"

namespace {

using pulse::DeviceFacts;
using pulse::DeviceKind;

struct Case {
    const char *what;
    DeviceFacts facts;
    const char *name;
    bool microphone; // found by the routing's first or second pass
};

DeviceFacts source(const char *name, const char *description, const char *port = "",
                   const char *portDescription = "", const char *form = "", const char *bus = "pci",
                   const char *profile = "")
{
    return {.kind = DeviceKind::Source,
            .name = name,
            .description = description,
            .portName = port,
            .portDescription = portDescription,
            .formFactor = form,
            .bus = bus,
            .profile = profile};
}

// As PipeWire's pulse server reports an ALSA node: the factory that made it, class "sound".
DeviceFacts pipewireAlsa(DeviceFacts facts)
{
    facts.deviceClass = "sound";
    facts.factoryName =
        facts.kind == DeviceKind::Sink ? "api.alsa.pcm.sink" : "api.alsa.pcm.source";
    return facts;
}

const char *const kCard = "alsa_input.pci-0000_00_1f.3.analog-stereo";
const char *const kCardText = "Built-in Audio Analog Stereo";

const Case kSources[] = {
    // A desktop's or laptop's own card.
    {"laptop microphone",
     source(kCard, kCardText, "analog-input-internal-mic", "Internal Microphone"),
     "Built-in Microphone", true},
    {"front jack", source(kCard, kCardText, "analog-input-front-mic", "Front Microphone"),
     "External Microphone", true},
    {"rear jack", source(kCard, kCardText, "analog-input-rear-mic", "Rear Microphone"),
     "External Microphone", true},
    {"headset jack", source(kCard, kCardText, "analog-input-headset-mic", "Headset Microphone"),
     "External Microphone", true},
    {"dock jack", source(kCard, kCardText, "analog-input-dock-mic", "Dock Microphone"),
     "External Microphone", true},
    {"only jack", source(kCard, kCardText, "analog-input-mic", "Microphone"), "External Microphone",
     true},
    {"line input", source(kCard, kCardText, "analog-input-linein", "Line In"), kCardText, false},
    {"card without ports", source(kCard, kCardText), kCardText, false},
    // UCM: the name says little, its comment says where the microphone sits.
    {"UCM laptop array",
     source("alsa_input.pci-0000_00_1f.3-platform-skl_hda_dsp_generic.HiFi__hw_sofhdadsp_6__source",
            "Tiger Lake-LP Smart Sound Technology Audio Controller Digital Microphone", "[In] Mic1",
            "Digital Microphone"),
     "Built-in Microphone", true},
    {"UCM headset jack",
     source("alsa_input.pci-0000_00_1f.3-platform-skl_hda_dsp_generic.HiFi__hw_sofhdadsp__source",
            "Tiger Lake-LP Smart Sound Technology Audio Controller Headphones Stereo Microphone",
            "[In] Mic2", "Headphones Stereo Microphone"),
     "External Microphone", true},
    {"UCM headset", source(kCard, kCardText, "[In] Headset", "Headset Microphone"),
     "External Microphone", true},
    {"UCM line", source(kCard, kCardText, "[In] Line1", "Line Input"), kCardText, false},
    // USB and webcam microphones: their own description.
    {"USB microphone",
     source("alsa_input.usb-Blue_Microphones_Yeti_Stereo_Microphone_REV8-00.analog-stereo",
            "Yeti Stereo Microphone Analog Stereo", "analog-input-mic", "Microphone", "microphone",
            "usb"),
     "Yeti Stereo Microphone Analog Stereo Microphone", true},
    {"webcam",
     source("alsa_input.usb-046d_HD_Pro_Webcam_C920-02.analog-stereo",
            "HD Pro Webcam C920 Analog Stereo", "", "", "webcam", "usb"),
     "HD Pro Webcam C920 Analog Stereo Microphone", true},
    {"USB headset",
     source("alsa_input.usb-Logitech_USB_Headset-00.mono-fallback", "Logitech USB Headset Mono",
            "analog-input-mic", "Microphone", "headset", "usb"),
     "Logitech USB Headset Mono Microphone", true},
    {"USB device saying nothing more",
     source("alsa_input.usb-0d8c_USB_Audio-00.mono-fallback", "USB Audio Device Mono", "", "", "",
            "usb"),
     "USB Audio Device Mono Microphone", true},
    {"USB sound card line input",
     source("alsa_input.usb-Behringer_UMC202HD-00.analog-stereo", "UMC202HD Analog Stereo",
            "analog-input-linein", "Line In", "", "usb"),
     "UMC202HD Analog Stereo", false},
    {"a description that says it already",
     source("alsa_input.usb-RODE_NT-USB-00.analog-stereo", "RØDE NT-USB Microphone", "", "",
            "microphone", "usb"),
     "RØDE NT-USB Microphone", true},
    // Bluetooth headsets in their headset profile, on PulseAudio and PipeWire.
    {"Bluetooth HSP/HFP",
     source("bluez_source.00_1B_66_AA_BB_CC.headset_head_unit", "WH-1000XM4", "headset-input",
            "Headset", "headset", "bluetooth", "headset_head_unit"),
     "WH-1000XM4 Microphone", true},
    {"Bluetooth HFP native",
     source("bluez_source.00_1B_66_AA_BB_CC.handsfree_head_unit", "Jabra Evolve 65",
            "handsfree-input", "Handsfree", "", "bluetooth", "handsfree_head_unit"),
     "Jabra Evolve 65 Microphone", true},
    {"Bluetooth on PipeWire",
     source("bluez_input.00:1B:66:AA:BB:CC.0", "WH-1000XM4", "", "", "", "",
            "headset-head-unit-msbc"),
     "WH-1000XM4 Microphone", true},
    {"a phone playing music to us",
     source("bluez_source.00_1B_66_AA_BB_CC.a2dp_source", "Pixel 7", "", "", "phone", "bluetooth",
            "a2dp_source"),
     "Pixel 7", false},
    // What a machine has besides: never taken for a microphone whatever its port says.
    {"USB port never built in",
     source("alsa_input.usb-x", "Cam", "analog-input-internal-mic", "Internal Microphone", "",
            "usb"),
     "Cam Microphone", true},
    {"virtual source", source("echo_cancel_source", "Echo-Cancel Source", "", "", "", ""),
     "Echo-Cancel Source", false},
    {"monitor of speakers",
     {.kind = DeviceKind::Monitor,
      .name = "alsa_output.pci-0000_00_1f.3.analog-stereo.monitor",
      .description = "Monitor of Built-in Audio Analog Stereo",
      .portName = "analog-output-speaker",
      .portDescription = "Speakers",
      .formFactor = "microphone",
      .bus = "usb",
      .profile = ""},
     "Monitor of Built-in Audio Analog Stereo",
     false},
    {"monitor of a Bluetooth headset",
     {.kind = DeviceKind::Monitor,
      .name = "bluez_sink.00_1B_66_AA_BB_CC.headset_head_unit.monitor",
      .description = "Monitor of WH-1000XM4",
      .portName = "headset-output",
      .portDescription = "Headset",
      .formFactor = "headset",
      .bus = "bluetooth",
      .profile = "headset_head_unit"},
     "Monitor of WH-1000XM4",
     false},
    // PipeWire's pulse server: ALSA nodes keep the card's port names; some leave the bus out,
    // which the node's name still carries.
    {"PipeWire laptop microphone",
     pipewireAlsa(
         source(kCard, kCardText, "analog-input-internal-mic", "Internal Microphone", "internal")),
     "Built-in Microphone", true},
    {"PipeWire front jack",
     pipewireAlsa(source(kCard, kCardText, "analog-input-front-mic", "Front Microphone")),
     "External Microphone", true},
    {"PipeWire USB microphone, no bus said",
     pipewireAlsa(
         source("alsa_input.usb-Blue_Microphones_Yeti_Stereo_Microphone_REV8-00.analog-stereo",
                "Yeti Stereo Microphone Analog Stereo", "analog-input-mic", "Microphone", "", "")),
     "Yeti Stereo Microphone Analog Stereo Microphone", true},
    {"PipeWire USB port never built in, no bus said",
     pipewireAlsa(source("alsa_input.usb-x", "Cam", "analog-input-internal-mic",
                         "Internal Microphone", "", "")),
     "Cam Microphone", true},
    {"PipeWire Bluetooth headset with its bus",
     source("bluez_input.00:1B:66:AA:BB:CC.0", "WH-1000XM4", "", "", "headset", "bluetooth",
            "headset-head-unit"),
     "WH-1000XM4 Microphone", true},
    {"PipeWire remapped source", source("builtin_mic", "Desk Capture", "", "", "", ""),
     "Desk Capture", false},
    {"PipeWire monitor of ALSA speakers, class sound",
     pipewireAlsa({.kind = DeviceKind::Monitor,
                   .name = "alsa_output.pci-0000_00_1f.3.analog-stereo.monitor",
                   .description = "Monitor of Built-in Audio Analog Stereo",
                   .formFactor = "internal",
                   .bus = "pci"}),
     "Monitor of Built-in Audio Analog Stereo", false},
    {"PipeWire monitor of the loopback device",
     {.kind = DeviceKind::Monitor,
      .name = "BlackHole2ch_UID.monitor",
      .description = "Monitor of BlackHole 2ch",
      .deviceClass = "monitor",
      .factoryName = "support.null-audio-sink"},
     "Monitor of BlackHole 2ch",
     false},
    {"no description", source("alsa_input.usb-y", "", "", "", "webcam", "usb"),
     "alsa_input.usb-y Microphone", true},
};

TEST(PulseDeviceNaming, SourcesAreNamedSoTheRoutingFindsEveryMicrophone)
{
    for (const Case &c : kSources) {
        SCOPED_TRACE(c.what);
        const QString name = pulse::deviceName(c.facts);
        EXPECT_EQ(name, QString::fromUtf8(c.name));
        EXPECT_EQ(AudioDeviceNames::isFirstPassMicrophone(name) ||
                      AudioDeviceNames::isSecondPassMicrophone(name),
                  c.microphone);
    }
}

TEST(PulseDeviceNaming, SinksAreNamedSoTheRoutingFindsTheSpeakersOrHeadphones)
{
    struct SinkCase {
        const char *what;
        const char *port;
        const char *bus;
        const char *formFactor;
        const char *name;
        bool firstPassOutput;
    };
    const SinkCase cases[] = {
        {"laptop speakers", "analog-output-speaker", "pci", "internal", "Built-in Output", true},
        {"UCM speakers", "[Out] Speaker", "pci", "", "Built-in Output", true},
        {"headphone jack", "analog-output-headphones", "pci", "",
         "Built-in Audio Analog Stereo Headphones", true},
        {"UCM headphones", "[Out] Headphones", "pci", "", "Built-in Audio Analog Stereo Headphones",
         true},
        {"line out", "analog-output-lineout", "pci", "", "Built-in Audio Analog Stereo", false},
        {"HDMI", "hdmi-output-0", "pci", "", "Built-in Audio Analog Stereo", false},
        {"USB speakers", "analog-output-speaker", "usb", "speaker", "Built-in Audio Analog Stereo",
         false},
        {"no port (a null sink)", "", "", "", "Built-in Audio Analog Stereo", false},
        // A sink is played to, not recorded from, whatever it calls itself.
        {"a sink that says microphone", "", "usb", "microphone", "Built-in Audio Analog Stereo",
         false},
    };
    for (const SinkCase &c : cases) {
        SCOPED_TRACE(c.what);
        const QString name =
            pulse::deviceName({.kind = DeviceKind::Sink,
                               .name = "alsa_output.pci-0000_00_1f.3.analog-stereo",
                               .description = "Built-in Audio Analog Stereo",
                               .portName = c.port,
                               .formFactor = c.formFactor,
                               .bus = c.bus});
        EXPECT_EQ(name, QString::fromUtf8(c.name));
        EXPECT_EQ(AudioDeviceNames::isFirstPassOutput(name), c.firstPassOutput);
        EXPECT_FALSE(AudioDeviceNames::isSecondPassMicrophone(name));
    }
}

// What records what is played to it, and how a device is attached, from what PulseAudio and
// PipeWire's pulse server each report: never from a driver's name or a module's number.
TEST(PulseDeviceNaming, LoopbackDevicesAndBusesAreKnownOnBothServers)
{
    using pulse::Transport;
    struct KindCase {
        const char *what;
        DeviceFacts facts;
        bool loopback;
        Transport transport;
    };
    const KindCase cases[] = {
        {"PulseAudio null sink",
         {.kind = DeviceKind::Sink, .name = "BlackHole2ch_UID", .deviceClass = "abstract"},
         true,
         Transport::Virtual},
        {"PipeWire null sink",
         {.kind = DeviceKind::Sink,
          .name = "BlackHole2ch_UID",
          .factoryName = "support.null-audio-sink"},
         true,
         Transport::Virtual},
        {"PipeWire null sink's monitor is a source",
         {.kind = DeviceKind::Monitor,
          .name = "BlackHole2ch_UID.monitor",
          .deviceClass = "monitor",
          .factoryName = "support.null-audio-sink"},
         false,
         Transport::Virtual},
        {"PulseAudio null source",
         {.kind = DeviceKind::Source, .deviceClass = "abstract"},
         false,
         Transport::Virtual},
        {"PulseAudio combine sink",
         {.kind = DeviceKind::Sink, .deviceClass = "filter"},
         false,
         Transport::Virtual},
        {"PipeWire combine sink: no class, no factory",
         {.kind = DeviceKind::Sink, .name = "mix"},
         false,
         Transport::Virtual},
        {"PulseAudio card",
         {.kind = DeviceKind::Sink,
          .name = "alsa_output.pci-0000_00_1f.3.analog-stereo",
          .bus = "pci",
          .deviceClass = "sound"},
         false,
         Transport::BuiltIn},
        {"PipeWire card",
         pipewireAlsa({.kind = DeviceKind::Sink,
                       .name = "alsa_output.pci-0000_00_1f.3.analog-stereo",
                       .bus = "pci"}),
         false, Transport::BuiltIn},
        {"system-on-chip card",
         {.kind = DeviceKind::Source, .bus = "platform"},
         false,
         Transport::BuiltIn},
        {"PipeWire USB card, no bus said",
         pipewireAlsa({.kind = DeviceKind::Sink, .name = "alsa_output.usb-Generic_USB_Audio-00"}),
         false, Transport::Usb},
        {"PipeWire card, no bus said",
         pipewireAlsa({.kind = DeviceKind::Source, .name = "alsa_input.pci-0000_00_1f.3.analog"}),
         false, Transport::BuiltIn},
        {"a name that only looks like a bus",
         {.kind = DeviceKind::Sink, .name = "my.usb-sink"},
         false,
         Transport::Virtual},
        {"PipeWire Bluetooth headphones",
         {.kind = DeviceKind::Sink, .name = "bluez_output.00_1B_66_AA_BB_CC.1", .bus = "bluetooth"},
         false,
         Transport::Virtual},
    };
    for (const KindCase &c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(pulse::isLoopbackSink(c.facts), c.loopback);
        EXPECT_EQ(pulse::transportOf(c.facts), c.transport);
    }
}

} // namespace
