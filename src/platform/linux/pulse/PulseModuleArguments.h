#pragma once
// Module arguments with any text in them. The server splits "key=value …" at white space
// unless a value is in double or single quotes, where a backslash takes the next character
// as it is; a property list value ("sink_properties") is handed on undecoded to the
// property list parser, which reads its own quotes and backslashes the same way.
#include <QString>

namespace pulse {

// Any text as one plain value: as it is when it is a plain word ("alsa_input.pci-0000_00_1f.3"),
// else in single quotes with the quotes and backslashes inside escaped.
QString argumentValue(const QString &text);

// One property for a "…_properties=" argument, quoted for both parsers:
// 'key="value"'.
QString propertyArgument(const QString &key, const QString &value);

} // namespace pulse
