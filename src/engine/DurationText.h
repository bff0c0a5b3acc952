#pragma once
// The running time as the labels show it: "HH:MM:SS", with hours wrapping at 60 as they
// always have.
#include <QString>

struct HoursMinutesSeconds {
    unsigned long h, m, s;
};

inline HoursMinutesSeconds splitSeconds(int seconds)
{
    const auto total = static_cast<unsigned long>(seconds);
    return {total / 3600 % 60, total / 60 % 60, total % 60};
}

inline QString durationText(int seconds)
{
    const HoursMinutesSeconds t = splitSeconds(seconds);
    return QString::asprintf("%02lu:%02lu:%02lu", t.h, t.m, t.s);
}
