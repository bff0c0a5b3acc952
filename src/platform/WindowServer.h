#pragma once
// Port: the window server's list of windows and their descriptions.
// Descriptions are maps with the keys below; bounds are in window-server space
// (origin at the upper left of the primary display, y down).
#include <QImage>
#include <QList>
#include <QRectF>
#include <QVariantList>
#include <QVariantMap>
#include <cstdint>

using CGWindowID = uint32_t;

inline constexpr uint32_t kCGWindowListOptionAll = 0;
inline constexpr uint32_t kCGWindowListOptionOnScreenOnly = 1;
inline constexpr uint32_t kCGWindowListOptionIncludingWindow = 8;
inline constexpr uint32_t kCGWindowImageNominalResolution = 16;
inline constexpr CGWindowID kCGNullWindowID = 0;

inline constexpr char kCGWindowNumber[] = "kCGWindowNumber";
inline constexpr char kCGWindowName[] = "kCGWindowName";
inline constexpr char kCGWindowOwnerName[] = "kCGWindowOwnerName";
inline constexpr char kCGWindowOwnerPID[] = "kCGWindowOwnerPID";
inline constexpr char kCGWindowBounds[] = "kCGWindowBounds"; // map of "X", "Y", "Width", "Height"
inline constexpr char kCGWindowLayer[] = "kCGWindowLayer";
inline constexpr char kCGWindowAlpha[] = "kCGWindowAlpha";

class WindowServer {
public:
    virtual ~WindowServer() = default;
    // Window numbers, front-most first.
    virtual QList<CGWindowID> CGWindowListCreate(uint32_t option, CGWindowID relativeToWindow) = 0;
    // Descriptions; with kCGWindowListOptionIncludingWindow the one window, or none when gone.
    virtual QVariantList CGWindowListCopyWindowInfo(uint32_t option,
                                                    CGWindowID relativeToWindow) = 0;
    // What the screen shows in rect (window-server space, points), without the cursor.
    // A null image when the rectangle is empty or off every screen.
    virtual QImage CGWindowListCreateImage(const QRectF &rect, uint32_t option,
                                           CGWindowID relativeToWindow) = 0;
    // Only the listed windows, composed bottom (last) to top (first) into rect; parts of
    // them that other windows cover still show. Transparent where none of them is.
    virtual QImage CGWindowListCreateImageFromArray(const QRectF &rect,
                                                    const QList<CGWindowID> &windows,
                                                    uint32_t imageOption) = 0;
    // Whether a compositing manager shows translucent windows over what lies beneath; without
    // one a translucent window shows its own pixels only.
    virtual bool isCompositing() const { return true; }
};
