#pragma once
// What the benchmarks that run the whole program share: the length asked for, and a home
// of their own for settings, caches and recordings, set before Qt reads it.
#include <QTemporaryDir>
#include <QtGlobal>
#include <cstdio>

// BENCH_SECONDS, else the fallback.
inline int benchSeconds(int fallback)
{
    const int seconds = qEnvironmentVariableIntValue("BENCH_SECONDS");
    return seconds > 0 ? seconds : fallback;
}

// False (and says why) without an X display or a home.
inline bool prepareBenchProgram(const QTemporaryDir &home, const char *name)
{
    // The program's own log lines go to stderr: the figures keep their place among them.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    if (qEnvironmentVariableIsEmpty("DISPLAY")) {
        std::fprintf(stderr, "%s needs an X display (scripts/test-desktop)\n", name);
        return false;
    }
    if (!home.isValid())
        return false;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.filePath(".config").toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(".local/share").toUtf8());
    qputenv("XDG_CACHE_HOME", home.filePath(".cache").toUtf8());
    qputenv("XDG_STATE_HOME", home.filePath(".local/state").toUtf8());
    return true;
}
