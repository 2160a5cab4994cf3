#pragma once

#include "platform/FocusedWindow.h"
#include "platform/Scheduler.h"

#include <map>
#include <memory>

namespace quillet {

/// Windows that a test opens and whose manners it chooses. They do at once what they are asked to,
/// as far as their manners allow.
class MemoryFocusedWindow : public FocusedWindow {
public:
    struct Window {
        Rect frame;
        Size minimum{};
        Size step{1, 1}; ///< sizes are whole multiples of it, as in terminals
        WindowFill fill{};
        Rect room{}; ///< not empty: its far edges stop the window from growing beyond them
        bool obeys = true;
        bool isTiled = false;           ///< which holds it where it is until it fills the screen
        std::optional<Size> lateSize{}; ///< the program takes it a moment after every move
        int requests = 0;               ///< how often it was asked to move
    };

    explicit MemoryFocusedWindow(Scheduler& scheduler) : m_scheduler(scheduler) {}

    std::optional<Identity> identity() const override { return m_focused; }
    std::optional<Rect> topLeftFrame(Identity window) const override;
    void setSize(Identity window, const Size& size) override;
    WindowFill fill(Identity window) const override;
    void setTopLeft(Identity window, const Point& corner) override;
    void setFill(Identity window, const WindowFill& fill) override;
    void whenSettled(Identity window, Settled settled) override;

    /// Opens a window, which gets the focus.
    Identity open(const Rect& topLeftFrame);
    void focus(std::optional<Identity> window) { m_focused = window; }
    void close(Identity window);
    Window& window(Identity window) { return m_windows.at(window); }

private:
    void report(Identity window);

    Scheduler& m_scheduler;
    std::map<Identity, Window> m_windows;
    std::optional<Identity> m_focused;
    Identity m_lastIdentity = 0;
    std::map<Identity, std::pair<Settled, std::unique_ptr<Timer>>> m_waiting;
};

} // namespace quillet
