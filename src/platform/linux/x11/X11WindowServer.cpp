#include "X11WindowServer.h"

#include "Log.h"

#include <QPainter>
#include <xcb/composite.h>

using x11::reply;

X11WindowServer::X11WindowServer()
{
    if (!connection_.isValid()) {
        capstan::NSLog(lcPlatform, "window list: no X display");
        return;
    }
    const x11::XcbConnection &c = connection_;
    atoms_ = {c.atom("_NET_CLIENT_LIST_STACKING"),
              c.atom("_NET_WM_NAME"),
              c.atom("UTF8_STRING"),
              c.atom("_NET_WM_PID"),
              c.atom("_NET_WM_STATE"),
              c.atom("_NET_WM_STATE_HIDDEN"),
              c.atom("_NET_WM_WINDOW_TYPE"),
              c.atom("_NET_WM_WINDOW_TYPE_DOCK"),
              c.atom("_NET_WM_WINDOW_TYPE_DESKTOP"),
              c.atom("_NET_WM_CM_S0")};
    // Windows drawn off screen keep their pictures even where others cover them. Done at
    // once: a window's picture exists only after its next repaint.
    const xcb_query_extension_reply_t *extension =
        xcb_get_extension_data(c.get(), &xcb_composite_id);
    if (extension && extension->present) {
        auto version = reply(xcb_composite_query_version_reply(
            c.get(), xcb_composite_query_version(c.get(), 0, 4), nullptr));
        if (version) {
            xcb_composite_redirect_subwindows(c.get(), c.root(), XCB_COMPOSITE_REDIRECT_AUTOMATIC);
            // Windows already shown draw themselves again into their new pictures.
            for (CGWindowID window : stackingFrontFirst())
                xcb_clear_area(c.get(), 1, window, 0, 0, 0, 0);
            xcb_flush(c.get());
            composite_ = true;
        }
    }
    if (!composite_)
        capstan::NSLog(lcPlatform,
                       "window pictures: no XComposite, covered parts show what covers them");
}

QList<CGWindowID> X11WindowServer::stackingFrontFirst() const
{
    const std::vector<uint32_t> bottomFirst =
        connection_.cardinals(connection_.root(), atoms_.clientListStacking, XCB_ATOM_WINDOW);
    return QList<CGWindowID>(bottomFirst.rbegin(), bottomFirst.rend());
}

bool X11WindowServer::isOnScreen(xcb_window_t window) const
{
    auto attributes = reply(xcb_get_window_attributes_reply(
        connection_.get(), xcb_get_window_attributes(connection_.get(), window), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
        // A client inside a frame is viewable only if its frame is.
        if (!attributes || attributes->map_state == XCB_MAP_STATE_UNMAPPED)
            return false;
    }
    for (uint32_t state : connection_.cardinals(window, atoms_.netWmState, XCB_ATOM_ATOM))
        if (state == atoms_.stateHidden)
            return false;
    return true;
}

QRect X11WindowServer::rootGeometry(xcb_window_t window) const
{
    xcb_connection_t *c = connection_.get();
    auto geometry = reply(xcb_get_geometry_reply(c, xcb_get_geometry(c, window), nullptr));
    if (!geometry)
        return {};
    auto translated = reply(xcb_translate_coordinates_reply(
        c, xcb_translate_coordinates(c, window, connection_.root(), 0, 0), nullptr));
    if (!translated)
        return {};
    return QRect(translated->dst_x, translated->dst_y, geometry->width, geometry->height);
}

xcb_window_t X11WindowServer::topLevelOf(xcb_window_t window) const
{
    xcb_connection_t *c = connection_.get();
    for (int depth = 0; depth < 16; ++depth) {
        auto tree = reply(xcb_query_tree_reply(c, xcb_query_tree(c, window), nullptr));
        if (!tree || tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
            return window;
        window = tree->parent;
    }
    return window;
}

QVariantMap X11WindowServer::describe(xcb_window_t window) const
{
    const QRect root = rootGeometry(window);
    if (root.isNull())
        return {};
    const QRect bounds = root.translated(-connection_.primaryMonitor().topLeft());
    QString name = QString::fromUtf8(connection_.bytes(window, atoms_.netWmName));
    if (name.isEmpty())
        name = QString::fromLatin1(connection_.bytes(window, XCB_ATOM_WM_NAME));
    // WM_CLASS holds the instance and the class, each ending in a zero byte.
    const QList<QByteArray> wmClass = connection_.bytes(window, XCB_ATOM_WM_CLASS).split('\0');
    const QString owner = QString::fromLatin1(wmClass.value(1, wmClass.value(0)));
    const std::vector<uint32_t> pid =
        connection_.cardinals(window, atoms_.netWmPid, XCB_ATOM_CARDINAL);
    int layer = 0;
    for (uint32_t type : connection_.cardinals(window, atoms_.windowType, XCB_ATOM_ATOM)) {
        if (type == atoms_.typeDock)
            layer = 20;
        if (type == atoms_.typeDesktop)
            layer = -2147483623;
    }
    return {
        {QString::fromLatin1(kCGWindowNumber), uint(window)},
        {QString::fromLatin1(kCGWindowName), name},
        {QString::fromLatin1(kCGWindowOwnerName), owner},
        {QString::fromLatin1(kCGWindowOwnerPID), pid.empty() ? 0 : int(pid.front())},
        {QString::fromLatin1(kCGWindowBounds), QVariantMap{{"X", bounds.x()},
                                                           {"Y", bounds.y()},
                                                           {"Width", bounds.width()},
                                                           {"Height", bounds.height()}}},
        {QString::fromLatin1(kCGWindowLayer), layer},
        {QString::fromLatin1(kCGWindowAlpha), 1.0},
    };
}

QList<CGWindowID> X11WindowServer::CGWindowListCreate(uint32_t option, CGWindowID relativeToWindow)
{
    std::lock_guard lock(mutex_);
    if (!connection_.isValid())
        return {};
    if (option & kCGWindowListOptionIncludingWindow)
        return rootGeometry(relativeToWindow).isNull() ? QList<CGWindowID>()
                                                       : QList<CGWindowID>{relativeToWindow};
    QList<CGWindowID> windows = stackingFrontFirst();
    if (option & kCGWindowListOptionOnScreenOnly)
        windows.removeIf([this](CGWindowID w) { return !isOnScreen(w); });
    return windows;
}

QVariantList X11WindowServer::CGWindowListCopyWindowInfo(uint32_t option,
                                                         CGWindowID relativeToWindow)
{
    const QList<CGWindowID> windows = CGWindowListCreate(option, relativeToWindow);
    std::lock_guard lock(mutex_);
    QVariantList descriptions;
    for (CGWindowID window : windows) {
        const QVariantMap description = describe(window);
        if (!description.isEmpty())
            descriptions.append(description);
    }
    return descriptions;
}

QImage X11WindowServer::CGWindowListCreateImage(const QRectF &rect, uint32_t, CGWindowID)
{
    std::lock_guard lock(mutex_);
    const QRect area = rect.toAlignedRect().translated(connection_.primaryMonitor().topLeft()) &
                       connection_.rootGeometry();
    if (area.isEmpty() || !connection_.isValid())
        return {};
    return connection_.image(connection_.root(), area);
}

QImage X11WindowServer::CGWindowListCreateImageFromArray(const QRectF &rect,
                                                         const QList<CGWindowID> &windows, uint32_t)
{
    std::lock_guard lock(mutex_);
    const QRect area = rect.toAlignedRect().translated(connection_.primaryMonitor().topLeft());
    if (area.isEmpty() || !connection_.isValid())
        return {};
    QImage picture(area.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    xcb_connection_t *c = connection_.get();
    // Bottom (last) to top (first).
    for (qsizetype i = windows.size() - 1; i >= 0; --i) {
        const xcb_window_t window = windows[i];
        const QRect client = rootGeometry(window);
        const QRect wanted = client & area;
        if (wanted.isEmpty())
            continue;
        QImage part;
        if (composite_) {
            // The frame's off-screen picture holds the client; cut the client out of it.
            const xcb_window_t topLevel = topLevelOf(window);
            const QRect frame = rootGeometry(topLevel);
            const xcb_pixmap_t pixmap = xcb_generate_id(c);
            auto error = reply(xcb_request_check(
                c, xcb_composite_name_window_pixmap_checked(c, topLevel, pixmap)));
            if (!error) {
                part = connection_.image(pixmap, wanted.translated(-frame.topLeft()));
                xcb_free_pixmap(c, pixmap);
            }
        }
        if (part.isNull())
            part = connection_.image(connection_.root(), wanted);
        if (!part.isNull())
            painter.drawImage(wanted.topLeft() - area.topLeft(), part);
    }
    return picture;
}

bool X11WindowServer::isCompositing() const
{
    std::lock_guard lock(mutex_);
    if (!connection_.isValid() || atoms_.compositingManager == XCB_ATOM_NONE)
        return false;
    xcb_connection_t *c = connection_.get();
    auto owner = reply(xcb_get_selection_owner_reply(
        c, xcb_get_selection_owner(c, atoms_.compositingManager), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}
