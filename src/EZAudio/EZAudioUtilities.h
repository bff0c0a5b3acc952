#pragma once
// The failure gate of the audio device layer.
#include "AudioHardware.h"

class EZAudioUtilities {
public:
    // Status 0 passes. Otherwise writes "Error: <operation> (<code>)" to standard error,
    // the code as four quoted characters when printable, else in decimal, and ends the
    // process with status -1 when shouldExitOnCheckResultFail is set (the default).
    static void checkResult(OSStatus result, const char *operation);
    static void setShouldExitOnCheckResultFail(bool shouldExit);
    static bool shouldExitOnCheckResultFail();
    // The text checkResult writes for a status.
    static QString codeText(OSStatus result);
};
