#pragma once
// The screen under the pointer and two point conversions on a screen, in screen space
// (origin at the lower left of the primary display, y up).
#include "Pointer.h"
#include "ScreenCatalog.h"

#include <QPointF>
#include <optional>

class NSScreenPointConversion {
public:
    // The first screen whose frame holds the pointer by the y-up test (bottom edge out,
    // top edge in); none when the pointer is off every screen.
    static std::optional<ScreenInfo> currentScreenForMouseLocation(const ScreenCatalog &screens,
                                                                   const Pointer &pointer);
    // (| |F.x| - |x| |, F.height - y) for the screen's frame F. The absolute values suit a
    // screen left of the primary one; other layouts come out wrong, as they always have.
    static QPointF convertPointToScreenCoordinates(const ScreenInfo &screen, const QPointF &point);
    // (x, F.height - y).
    static QPointF flipPoint(const ScreenInfo &screen, const QPointF &point);
};
