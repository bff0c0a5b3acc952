#pragma once
// The window server on X11: the window manager's client list (EWMH) for the window
// list and descriptions, the root window for screen pictures, and XComposite for
// pictures of windows that others cover.
//
// Bounds are the windows' client areas in the window server's space (origin at the upper
// left of the primary monitor, y down; see ScreenGeometry.h): what a window recording
// shows is the window's own content.
// Safe from any thread: one connection, one lock.
#include "WindowServer.h"
#include "XcbConnection.h"

#include <mutex>

class X11WindowServer final : public WindowServer {
public:
    X11WindowServer();

    QList<CGWindowID> CGWindowListCreate(uint32_t option, CGWindowID relativeToWindow) override;
    QVariantList CGWindowListCopyWindowInfo(uint32_t option, CGWindowID relativeToWindow) override;
    QImage CGWindowListCreateImage(const QRectF &rect, uint32_t option,
                                   CGWindowID relativeToWindow) override;
    QImage CGWindowListCreateImageFromArray(const QRectF &rect, const QList<CGWindowID> &windows,
                                            uint32_t imageOption) override;
    // A compositing manager owns the selection _NET_WM_CM_S0 (EWMH).
    bool isCompositing() const override;

private:
    struct Atoms {
        xcb_atom_t clientListStacking, netWmName, utf8String, netWmPid, netWmState, stateHidden,
            windowType, typeDock, typeDesktop, compositingManager;
    };
    bool isOnScreen(xcb_window_t window) const;
    // The window's client area in root coordinates; empty when it is gone.
    QRect rootGeometry(xcb_window_t window) const;
    // The child of the root that holds the window (the window manager's frame).
    xcb_window_t topLevelOf(xcb_window_t window) const;
    QVariantMap describe(xcb_window_t window) const;
    QList<CGWindowID> stackingFrontFirst() const;

    mutable std::mutex mutex_;
    x11::XcbConnection connection_;
    Atoms atoms_{};
    bool composite_ = false;
};
