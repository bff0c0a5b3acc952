#include "EZAudioUtilities.h"

#include <atomic>
#include <cctype>
#include <cstdio>
#include <cstdlib>

namespace {
std::atomic<bool> shouldExit{true};
}

QString EZAudioUtilities::codeText(OSStatus result)
{
    const auto value = static_cast<uint32_t>(result);
    const char chars[4] = {char(value >> 24), char((value >> 16) & 0xff), char((value >> 8) & 0xff),
                           char(value & 0xff)};
    bool printable = true;
    for (char c : chars)
        printable = printable && std::isprint(static_cast<unsigned char>(c));
    if (printable)
        return QStringLiteral("'") + QString::fromLatin1(chars, 4) + QStringLiteral("'");
    return QString::number(result);
}

void EZAudioUtilities::checkResult(OSStatus result, const char *operation)
{
    if (result == noErr)
        return;
    std::fprintf(stderr, "Error: %s (%s)\n", operation, codeText(result).toLatin1().constData());
    std::fflush(stderr);
    if (shouldExit.load())
        std::exit(-1);
}

void EZAudioUtilities::setShouldExitOnCheckResultFail(bool value)
{
    shouldExit.store(value);
}

bool EZAudioUtilities::shouldExitOnCheckResultFail()
{
    return shouldExit.load();
}
