#pragma once

#include "platform/Geometry.h"

#include <functional>
#include <optional>
#include <QtGlobal>

namespace quillet {

/// How the window manager has a window fill its screen. It keeps the frame for afterwards.
struct WindowFill {
    bool horizontally = false;
    bool vertically = false;
    bool fullScreen = false;
    bool operator==(const WindowFill&) const = default;

    bool isAny() const { return horizontally || vertically || fullScreen; }
};

/// The window that has the user's attention, and asking it to be elsewhere.
///
/// A frame is what people see of a window: with the title bar that the desktop puts around it,
/// without a shadow that the program draws itself. Frames are in points, y downwards from the top
/// left of the primary screen.
class FocusedWindow {
public:
    /// Another one for every window that exists at the same time.
    using Identity = quint64;
    using Settled = std::function<void(std::optional<Rect> topLeftFrame)>;

    virtual ~FocusedWindow() = default;

    /// The focused window of the front application. Absent where there is none, and where it is
    /// a panel, the desktop, or a window of our own.
    virtual std::optional<Identity> identity() const = 0;

    /// Absent where the window has gone.
    virtual std::optional<Rect> topLeftFrame(Identity window) const = 0;

    /// Whether it is maximised or full-screen. Neither where it has gone.
    virtual WindowFill fill(Identity window) const = 0;

    /// Wishes: the window's program and the window manager have the last word. A maximised or
    /// full-screen window leaves that state first, and fills the screen anew where that was asked
    /// for after its size and its corner. What is asked for within one turn of the event loop may
    /// become one request.
    virtual void setSize(Identity window, const Size& size) = 0;
    virtual void setTopLeft(Identity window, const Point& corner) = 0;
    virtual void setFill(Identity window, const WindowFill& fill) = 0;

    /// Calls with where the window is when all that was asked of it has been answered, or when no
    /// answer comes within a fraction of a second; absent when the window has gone. Calls a second
    /// time if the window has another frame a moment later, because its program changed its mind.
    /// Runs from the event loop. A later wait for the same window replaces the one before.
    virtual void whenSettled(Identity window, Settled settled) = 0;
};

} // namespace quillet
