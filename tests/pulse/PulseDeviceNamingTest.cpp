// Device names from what real machines' sound servers report: every microphone is one the
// routing recognises, nothing else is, and monitors never are.
#include "PulseDeviceNaming.h"
#include "AudioDeviceNames.h"

#include <gtest/gtest.h>

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
    return {DeviceKind::Source, name, description, port, portDescription, form, bus, profile};
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
     {DeviceKind::Monitor, "alsa_output.pci-0000_00_1f.3.analog-stereo.monitor",
      "Monitor of Built-in Audio Analog Stereo", "analog-output-speaker", "Speakers", "microphone",
      "usb", ""},
     "Monitor of Built-in Audio Analog Stereo",
     false},
    {"monitor of a Bluetooth headset",
     {DeviceKind::Monitor, "bluez_sink.00_1B_66_AA_BB_CC.headset_head_unit.monitor",
      "Monitor of WH-1000XM4", "headset-output", "Headset", "headset", "bluetooth",
      "headset_head_unit"},
     "Monitor of WH-1000XM4",
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
        const QString name = pulse::deviceName(
            {DeviceKind::Sink, "alsa_output.pci-0000_00_1f.3.analog-stereo",
             "Built-in Audio Analog Stereo", c.port, "", c.formFactor, c.bus, ""});
        EXPECT_EQ(name, QString::fromUtf8(c.name));
        EXPECT_EQ(AudioDeviceNames::isFirstPassOutput(name), c.firstPassOutput);
        EXPECT_FALSE(AudioDeviceNames::isSecondPassMicrophone(name));
    }
}

} // namespace
