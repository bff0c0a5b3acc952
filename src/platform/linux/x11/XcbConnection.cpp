#include "XcbConnection.h"

#include <cstring>
#include <xcb/randr.h>

namespace x11 {

XcbConnection::XcbConnection()
{
    connection_ = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection_))
        return;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    root_ = screen->root;
    rootDepth_ = screen->root_depth;
    // A request of a missing extension would close the connection; RandR answers monitors
    // to a client that said it knows version 1.5.
    const xcb_query_extension_reply_t *randr = xcb_get_extension_data(connection_, &xcb_randr_id);
    if (randr && randr->present) {
        auto version = reply(xcb_randr_query_version_reply(
            connection_, xcb_randr_query_version(connection_, 1, 5), nullptr));
        hasMonitors_ = version && (version->major_version > 1 || version->minor_version >= 5);
    }
}

XcbConnection::~XcbConnection()
{
    xcb_disconnect(connection_);
}

bool XcbConnection::isValid() const
{
    return connection_ && !xcb_connection_has_error(connection_);
}

QRect XcbConnection::rootGeometry() const
{
    auto geometry =
        reply(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, root_), nullptr));
    return geometry ? QRect(0, 0, geometry->width, geometry->height) : QRect();
}

QRect XcbConnection::primaryMonitor() const
{
    if (!hasMonitors_)
        return rootGeometry();
    auto monitors = reply(xcb_randr_get_monitors_reply(
        connection_, xcb_randr_get_monitors(connection_, root_, 1), nullptr));
    if (!monitors)
        return rootGeometry();
    QRect first;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem;
         xcb_randr_monitor_info_next(&it)) {
        const QRect rect(it.data->x, it.data->y, it.data->width, it.data->height);
        if (it.data->primary)
            return rect;
        if (first.isNull())
            first = rect;
    }
    return first.isNull() ? rootGeometry() : first;
}

xcb_atom_t XcbConnection::atom(const char *name) const
{
    auto answer = reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, uint16_t(std::strlen(name)), name), nullptr));
    return answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

std::vector<uint32_t> XcbConnection::cardinals(xcb_window_t window, xcb_atom_t property,
                                               xcb_atom_t type) const
{
    auto answer = reply(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, property, type, 0, 4096), nullptr));
    if (!answer || answer->format != 32)
        return {};
    const auto *values = static_cast<const uint32_t *>(xcb_get_property_value(answer.get()));
    return std::vector<uint32_t>(values, values + xcb_get_property_value_length(answer.get()) / 4);
}

QByteArray XcbConnection::bytes(xcb_window_t window, xcb_atom_t property) const
{
    auto answer = reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 4096),
        nullptr));
    if (!answer || answer->format != 8)
        return {};
    return QByteArray(static_cast<const char *>(xcb_get_property_value(answer.get())),
                      xcb_get_property_value_length(answer.get()));
}

void copyOpaque(const uint8_t *source, int sourceStride, uint8_t *target, int targetStride,
                int width, int height)
{
    for (int y = 0; y < height; ++y) {
        const auto *in = reinterpret_cast<const uint32_t *>(source + size_t(y) * sourceStride);
        auto *out = reinterpret_cast<uint32_t *>(target + size_t(y) * targetStride);
        for (int x = 0; x < width; ++x)
            out[x] = in[x] | 0xff000000u;
    }
}

bool XcbConnection::imageInto(xcb_drawable_t drawable, const QRect &rect, uint8_t *target,
                              int targetStride) const
{
    if (rect.isEmpty())
        return false;
    auto answer = reply(xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, drawable, int16_t(rect.x()),
                      int16_t(rect.y()), uint16_t(rect.width()), uint16_t(rect.height()), ~0u),
        nullptr));
    if (!answer)
        return false;
    const int length = xcb_get_image_data_length(answer.get());
    if (length < rect.width() * rect.height() * 4)
        return false;
    copyOpaque(xcb_get_image_data(answer.get()), length / rect.height(), target, targetStride,
               rect.width(), rect.height());
    return true;
}

QImage XcbConnection::image(xcb_drawable_t drawable, const QRect &rect) const
{
    if (rect.isEmpty())
        return {};
    QImage picture(rect.size(), QImage::Format_ARGB32_Premultiplied);
    if (!imageInto(drawable, rect, picture.bits(), int(picture.bytesPerLine())))
        return {};
    return picture;
}

} // namespace x11
