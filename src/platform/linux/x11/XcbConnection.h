#pragma once
// An X connection of our own (xcb), with the few helpers the adapters share.
// xcb connections are thread-safe; each adapter still keeps its own so one thread's
// round trips never wait behind another's.
#include <QImage>
#include <QRect>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace x11 {

// A reply of xcb, freed with free().
template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;
template <typename T> Reply<T> reply(T *raw)
{
    return Reply<T>(raw, &std::free);
}

class XcbConnection {
public:
    // The display named by DISPLAY; check isValid().
    XcbConnection();
    ~XcbConnection();
    XcbConnection(const XcbConnection &) = delete;
    XcbConnection &operator=(const XcbConnection &) = delete;

    bool isValid() const;
    xcb_connection_t *get() const { return connection_; }
    xcb_window_t root() const { return root_; }
    uint8_t rootDepth() const { return rootDepth_; }
    QRect rootGeometry() const;
    // The primary monitor in root coordinates (RandR monitors; the first one when none is
    // primary; the whole root without RandR). Asked anew each time: monitors come and go.
    QRect primaryMonitor() const;

    xcb_atom_t atom(const char *name) const;
    // A property's 32-bit values (windows, cardinals, atoms).
    std::vector<uint32_t> cardinals(xcb_window_t window, xcb_atom_t property,
                                    xcb_atom_t type) const;
    // A text property: UTF-8 for _NET_WM_NAME, Latin-1 for WM_NAME and WM_CLASS.
    QByteArray bytes(xcb_window_t window, xcb_atom_t property) const;

    // The drawable's pixels in rect (its own coordinates) as opaque premultiplied ARGB;
    // null when the server refuses (a rectangle outside the drawable).
    QImage image(xcb_drawable_t drawable, const QRect &rect) const;
    // The same picture written into target (rows of targetStride bytes); false when the
    // server gave none.
    bool imageInto(xcb_drawable_t drawable, const QRect &rect, uint8_t *target,
                   int targetStride) const;

private:
    xcb_connection_t *connection_ = nullptr;
    xcb_window_t root_ = 0;
    uint8_t rootDepth_ = 24;
    bool hasMonitors_ = false;
};

// Copies 32-bit pixels, B, G, R, X in memory, making the X byte an opaque alpha.
void copyOpaque(const uint8_t *source, int sourceStride, uint8_t *target, int targetStride,
                int width, int height);

} // namespace x11
