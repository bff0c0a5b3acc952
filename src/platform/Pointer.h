#pragma once
// Port: the mouse pointer as the compositor draws it.
#include <QImage>
#include <QPointF>

struct CursorImage {
    QImage image;    // premultiplied ARGB, in points
    QPointF hotSpot; // from the image's top left, y down
};

class Pointer {
public:
    virtual ~Pointer() = default;
    // In screen space: origin at the lower left of the primary display, y up.
    virtual QPointF mouseLocation() const = 0;
    // The arrow, whatever shape the pointer has on the screen.
    virtual CursorImage arrowCursor() const = 0;
};
