#pragma once
// The pointer on X11: its place from XQueryPointer, the arrow from the Xcursor theme
// (XCURSOR_THEME, XCURSOR_SIZE), drawn by hand when the theme has none.
#include "Pointer.h"
#include "ScreenCatalog.h"
#include "XcbConnection.h"

#include <atomic>
#include <mutex>

class X11Pointer final : public Pointer {
public:
    // The primary screen's height is read here, on the calling thread.
    explicit X11Pointer(const ScreenCatalog &screens);

    QPointF mouseLocation() const override;
    CursorImage arrowCursor() const override;

private:
    x11::XcbConnection connection_;
    std::atomic<double> primaryHeight_{0};
    mutable std::once_flag arrowOnce_;
    mutable CursorImage arrow_;
};
