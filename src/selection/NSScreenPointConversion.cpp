#include "NSScreenPointConversion.h"

#include "PointInRect.h"

#include <cmath>

std::optional<ScreenInfo>
NSScreenPointConversion::currentScreenForMouseLocation(const ScreenCatalog &screens,
                                                       const Pointer &pointer)
{
    const QPointF location = pointer.mouseLocation();
    for (const ScreenInfo &screen : screens.screens()) {
        if (NSMouseInRect(location, screen.frame, false))
            return screen;
    }
    return std::nullopt;
}

QPointF NSScreenPointConversion::convertPointToScreenCoordinates(const ScreenInfo &screen,
                                                                 const QPointF &point)
{
    const QRectF &frame = screen.frame;
    return {std::fabs(std::fabs(frame.x()) - std::fabs(point.x())), frame.height() - point.y()};
}

QPointF NSScreenPointConversion::flipPoint(const ScreenInfo &screen, const QPointF &point)
{
    return {point.x(), screen.frame.height() - point.y()};
}
