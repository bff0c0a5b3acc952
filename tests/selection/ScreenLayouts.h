#pragma once
// Screen layouts shared by the selection tests, in screen space (y up).
//   primary  (0, 0, 1440, 900)          at the origin
//   above    (0, 900, 1920, 1080)       stacked on top of the primary
//   left     (-1280, -124, 1280, 1024)  left of the primary, top edges level
#include "FakePorts.h"

inline ScreenInfo primaryScreen()
{
    return {QRectF(0, 0, 1440, 900), 71, QStringLiteral("Primary LCD")};
}
inline ScreenInfo aboveScreen()
{
    return {QRectF(0, 900, 1920, 1080), 72, QStringLiteral("Upper Monitor")};
}
inline ScreenInfo leftScreen()
{
    return {QRectF(-1280, -124, 1280, 1024), 73, QStringLiteral("Left Monitor")};
}

// The catalog's main screen is its first: here the one above, so a flip that measures
// against the main screen instead of the one at the origin shows.
inline void useThreeScreens(FakeScreens &screens)
{
    screens.list = {aboveScreen(), primaryScreen(), leftScreen()};
}
