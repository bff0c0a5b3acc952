#pragma once
// What a benchmark reads about a process: CPU time used and memory from /proc.
#include <cstdio>
#include <cstring>
#include <sys/resource.h>

inline double cpuSeconds(const rusage &usage)
{
    return double(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
           double(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// A kB figure of /proc/self/status ("VmRSS", "VmHWM"); 0 when unreadable.
inline long statusKilobytes(const char *key)
{
    FILE *status = std::fopen("/proc/self/status", "r");
    if (!status)
        return 0;
    char line[256];
    long kb = 0;
    const size_t keyLength = std::strlen(key);
    while (std::fgets(line, sizeof(line), status))
        if (std::strncmp(line, key, keyLength) == 0 && line[keyLength] == ':') {
            std::sscanf(line + keyLength + 1, "%ld", &kb);
            break;
        }
    std::fclose(status);
    return kb;
}
