#include "platform/linux/x11/X11WindowFrame.h"

#include <algorithm>

namespace quillet {
namespace {

/// Both properties have the same shape: left, right, top, bottom.
WindowMargins margins(xcb_connection_t* xcb, xcb_get_property_cookie_t asked) {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb, asked, nullptr));
    if (!reply || reply->format != 32 || reply->value_len != 4)
        return {};
    const auto* widths = static_cast<const int32_t*>(xcb_get_property_value(reply.get()));
    return {widths[0], widths[1], widths[2], widths[3]};
}

} // namespace

std::optional<X11WindowFrame> X11WindowFrame::read(const X11Connection& connection,
                                                   xcb_window_t window) {
    xcb_connection_t* xcb = connection.xcb();
    const auto ask = [&](const char* property) {
        return xcb_get_property(xcb, 0, window, connection.atom(property), XCB_ATOM_CARDINAL, 0, 4);
    };
    const auto decorationAsked = ask("_NET_FRAME_EXTENTS");
    const auto shadowAsked = ask("_GTK_FRAME_EXTENTS");
    const auto geometryAsked = xcb_get_geometry(xcb, window);
    const auto placeAsked = xcb_translate_coordinates(xcb, window, connection.root(), 0, 0);

    X11WindowFrame frame;
    frame.decoration = margins(xcb, decorationAsked);
    frame.shadow = margins(xcb, shadowAsked);
    const XcbOwned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(xcb, geometryAsked, nullptr));
    const XcbOwned<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(xcb, placeAsked, nullptr));
    if (!geometry || !place)
        return std::nullopt;
    frame.client = {place->dst_x, place->dst_y, geometry->width, geometry->height};
    return frame;
}

PixelRect X11WindowFrame::visible() const {
    const WindowMargins around{decoration.left - shadow.left, decoration.right - shadow.right,
                               decoration.top - shadow.top, decoration.bottom - shadow.bottom};
    return {client.x - around.left, client.y - around.top,
            client.width + around.left + around.right, client.height + around.top + around.bottom};
}

PixelRect X11WindowFrame::requestFor(const PixelRect& wanted) const {
    const int width =
        wanted.width - decoration.left - decoration.right + shadow.left + shadow.right;
    const int height =
        wanted.height - decoration.top - decoration.bottom + shadow.top + shadow.bottom;
    return {wanted.x - shadow.left, wanted.y - shadow.top, std::max(width, 1), std::max(height, 1)};
}

WindowFill fillOf(const X11Connection& connection, xcb_window_t window) {
    const auto states = connection.values(window, connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    const auto has = [&](const char* state) {
        return std::ranges::find(states, connection.atom(state)) != states.end();
    };
    return {has("_NET_WM_STATE_MAXIMIZED_HORZ"), has("_NET_WM_STATE_MAXIMIZED_VERT"),
            has("_NET_WM_STATE_FULLSCREEN")};
}

} // namespace quillet
