#pragma once

#include "platform/FocusedWindow.h"
#include "platform/linux/x11/ScreenGeometry.h"
#include "platform/linux/x11/X11Connection.h"

#include <optional>

namespace quillet {

/// Widths along the four edges of a window, native pixels.
struct WindowMargins {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
    bool operator==(const WindowMargins&) const = default;
};

/// Where a program's window is and what lies around its visible frame. The program's own window
/// includes the shadow that it draws (_GTK_FRAME_EXTENTS), and the window manager puts the title
/// bar and the borders outside of it (_NET_FRAME_EXTENTS).
struct X11WindowFrame {
    PixelRect client;
    WindowMargins decoration;
    WindowMargins shadow;

    /// Absent where the window has gone.
    static std::optional<X11WindowFrame> read(const X11Connection& connection, xcb_window_t window);

    /// What people see of the window.
    PixelRect visible() const;

    /// What to ask the window manager for so that the visible frame becomes this one: the outer
    /// corner, and the size of the program's own window.
    PixelRect requestFor(const PixelRect& visible) const;

    bool hasSameMargins(const X11WindowFrame& other) const {
        return decoration == other.decoration && shadow == other.shadow;
    }
};

/// Its maximised and full-screen states (_NET_WM_STATE).
WindowFill fillOf(const X11Connection& connection, xcb_window_t window);

} // namespace quillet
