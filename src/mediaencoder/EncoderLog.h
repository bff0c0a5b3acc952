#pragma once
// The library's own log lines, on standard error with a "MediaEncoder: " prefix.
#include <string>

namespace mediaencoder {

void logLine(const char *format, ...) __attribute__((format(printf, 1, 2)));
// FFmpeg's text of an error code.
std::string errorText(int code);

} // namespace mediaencoder
