#pragma once

#include "platform/linux/x11/X11WindowFrame.h"
#include "platform/Scheduler.h"

namespace quillet {

/// Brings another program's window to a place: has it leave its maximised or full-screen state,
/// asks the window manager for the place, waits for what comes of it, and has it fill the screen
/// if that is wanted. Never asks more than three times, and the third only because the margins
/// around the window changed.
///
/// Tells through `settled` that the window rests or has gone. Then it stays a moment longer: a
/// program that was maximised may put its shadow back late, and one that wants another frame is
/// told of by a second `settled`. Says `ended` at the end of all. Each may destroy it. Listens to
/// the window meanwhile and to nothing afterwards.
class X11WindowMove {
public:
    using Report = std::function<void()>;

    X11WindowMove(X11Connection& connection, Scheduler& scheduler, xcb_window_t window,
                  const PixelRect& visible, const WindowFill& fill, Report settled, Report ended);
    ~X11WindowMove();

    bool hasSettled() const { return m_phase == Phase::watching; }

private:
    enum class Phase { leaving, asked, filling, watching };

    void handle(const xcb_generic_event_t& event);
    void changeFill(uint32_t change, const WindowFill& states);
    void ask();
    void lookAtAnswer();
    void arrive();
    void settle();
    void settleAgain();

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    xcb_window_t m_window;
    PixelRect m_wanted;
    WindowFill m_fill;
    Report m_settled;
    Report m_ended;
    Phase m_phase = Phase::leaving;
    bool m_leavesFill = false;
    int m_asksLeft = 3;
    X11WindowFrame m_atAsking;
    std::optional<X11WindowFrame> m_atSettling;
    uint32_t m_eventsBefore = 0;
    X11Connection::Listening m_listening;
    std::unique_ptr<Timer> m_deadline;
    std::unique_ptr<Timer> m_late; ///< until a program that changed its mind is through with it
};

} // namespace quillet
