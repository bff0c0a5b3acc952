#include "EncoderLog.h"

extern "C" {
#include <libavutil/error.h>
}

#include <cstdarg>
#include <cstdio>

namespace mediaencoder {

void logLine(const char *format, ...)
{
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof(text), format, args);
    va_end(args);
    std::fprintf(stderr, "MediaEncoder: %s\n", text);
}

std::string errorText(int code)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(code, text, sizeof(text));
    return text;
}

} // namespace mediaencoder
