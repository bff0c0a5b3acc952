#pragma once
// Module arguments with any text in them. PulseAudio splits "key=value …" at white space
// unless a value is in double or single quotes, where a backslash takes the next character
// as it is; a property list value ("sink_properties") is handed on undecoded to the
// property list parser, which reads its own quotes and backslashes the same way.
// PipeWire's pulse server finds the closing quote the same way but keeps every backslash in
// the value: there, text goes in as it is, and the one quote character that would end it
// cannot be carried.
#include <QString>

namespace pulse {

enum class ArgumentParser { PulseAudio, PipeWire };

// The parser a server has, from the name it gives itself ("PulseAudio (on PipeWire 0.3.65)").
ArgumentParser argumentParserOf(const QString &serverName);

// Any text as one plain value: as it is when it is a plain word ("alsa_input.pci-0000_00_1f.3"),
// else in single quotes (on PulseAudio with the quotes and backslashes inside escaped).
QString argumentValue(const QString &text, ArgumentParser parser = ArgumentParser::PulseAudio);

// One property for a "…_properties=" argument, quoted for both parsers: 'key="value"'. On
// PipeWire the value's quotes become typographic ones (’ ”) and a final backslash "∖": the
// rest of the text arrives unchanged.
QString propertyArgument(const QString &key, const QString &value,
                         ArgumentParser parser = ArgumentParser::PulseAudio);

} // namespace pulse
