#pragma once
// The pointer on X11: its place from XQueryPointer, measured from the primary monitor's
// lower left; the arrow from the Xcursor theme (XCURSOR_THEME, XCURSOR_SIZE), drawn by
// hand when the theme has none. Safe from any thread.
#include "Pointer.h"
#include "XcbConnection.h"

#include <mutex>

class X11Pointer final : public Pointer {
public:
    QPointF mouseLocation() const override;
    CursorImage arrowCursor() const override;

private:
    x11::XcbConnection connection_;
    mutable std::once_flag arrowOnce_;
    mutable CursorImage arrow_;
};
