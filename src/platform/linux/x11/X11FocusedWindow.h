#pragma once

#include "platform/FocusedWindow.h"
#include "platform/linux/x11/X11Screens.h"
#include "platform/linux/x11/X11WindowMove.h"

#include <map>

namespace quillet {

/// The window manager's active window (_NET_ACTIVE_WINDOW). What is asked of a window in one turn
/// of the event loop is one move of it.
class X11FocusedWindow : public FocusedWindow {
public:
    X11FocusedWindow(X11Connection& connection, const X11Screens& screens, Scheduler& scheduler);

    std::optional<Identity> identity() const override;
    std::optional<Rect> topLeftFrame(Identity window) const override;
    void setSize(Identity window, const Size& size) override;
    WindowFill fill(Identity window) const override;
    void setTopLeft(Identity window, const Point& corner) override;
    void setFill(Identity window, const WindowFill& fill) override;
    void whenSettled(Identity window, Settled settled) override;

private:
    /// What was asked of one window and is not yet over.
    struct Wishes {
        std::optional<Size> size;
        std::optional<Point> corner;
        std::optional<WindowFill> fill;
        Settled settled;
        std::unique_ptr<Timer> turn;
        std::unique_ptr<X11WindowMove> move;
    };

    bool isOrdinary(xcb_window_t window) const;
    Wishes& wishes(Identity window);
    void carryOut(xcb_window_t window);
    void report(xcb_window_t window);
    void forget(xcb_window_t window);

    X11Connection& m_connection;
    const X11Screens& m_screens;
    Scheduler& m_scheduler;
    std::map<xcb_window_t, Wishes> m_wishes;
};

} // namespace quillet
