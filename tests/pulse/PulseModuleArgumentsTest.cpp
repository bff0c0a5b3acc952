// Module arguments as each server's parser needs them: PulseAudio takes backslash escapes
// away, PipeWire's pulse server keeps them, so there the text goes in as it is.
#include "PulseModuleArguments.h"

#include <gtest/gtest.h>

namespace {

using pulse::ArgumentParser;

TEST(PulseModuleArguments, EachServerGetsTheQuotingItsParserReads)
{
    EXPECT_EQ(pulse::argumentParserOf("pulseaudio"), ArgumentParser::PulseAudio);
    EXPECT_EQ(pulse::argumentParserOf("PulseAudio (on PipeWire 0.3.65)"), ArgumentParser::PipeWire);

    struct Case {
        const char *what;
        QString text;
        QString pulseaudio;
        QString pipewire;
    };
    const Case values[] = {
        {"a plain word", "alsa_input.pci-0000_00_1f.3", "alsa_input.pci-0000_00_1f.3",
         "alsa_input.pci-0000_00_1f.3"},
        {"spaces", "my sink", "'my sink'", "'my sink'"},
        {"a quote and a backslash", "it's C:\\x", "'it\\'s C:\\\\x'",
         QString::fromUtf8("'it’s C:\\x'")},
        {"double quotes need nothing in single ones", "a \"b\"", "'a \\\"b\\\"'", "'a \"b\"'"},
        {"a final backslash", "dir\\", "'dir\\\\'", QString::fromUtf8("'dir∖'")},
    };
    for (const Case &c : values) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(pulse::argumentValue(c.text, ArgumentParser::PulseAudio), c.pulseaudio);
        EXPECT_EQ(pulse::argumentValue(c.text, ArgumentParser::PipeWire), c.pipewire);
    }

    const QString name = "Desk \"Mix\" it's C:\\Sound\\ x";
    EXPECT_EQ(pulse::propertyArgument("device.description", name, ArgumentParser::PulseAudio),
              "'device.description=\"Desk \\\"Mix\\\" it\\'s C:\\\\Sound\\\\ x\"'");
    EXPECT_EQ(pulse::propertyArgument("device.description", name, ArgumentParser::PipeWire),
              QString::fromUtf8("'device.description=\"Desk ”Mix” it’s C:\\Sound\\ x\"'"));
}

} // namespace
