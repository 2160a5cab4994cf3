#pragma once

#include "platform/Alive.h"
#include "platform/KeyboardGrab.h"
#include "platform/Scheduler.h"

#include <functional>
#include <QObject>

namespace quillet {

/// What the panel of a locked keyboard shows.
class HUDState : public QObject {
    Q_OBJECT

public:
    int remaining() const { return m_remaining; } ///< whole seconds, never negative
    void setRemaining(int remaining);

Q_SIGNALS:
    void remainingChanged();

private:
    int m_remaining = 0;
};

/// Makes the keyboard inert for a while, so that it can be wiped clean, and shows a panel that
/// counts the seconds down and lets the pointer end it early. Owned by the switches, which learn of
/// the end through `onEnd`. The keyboard is held exactly while the lock is on.
class KeyboardLock {
public:
    /// The panel. Destroying it takes it off the screen, from within its `onDone` too.
    using HUD = std::shared_ptr<void>;

    /// Shows the panel without giving it the keyboard. The state outlives it.
    using ShowHUD = std::function<HUD(HUDState& state, std::function<void()> onDone)>;

    KeyboardLock(KeyboardGrab& keyboard, Scheduler& scheduler, ShowHUD showHUD);

    /// Locks the keyboard; whether it is locked now. One that is locked already keeps its end.
    bool start(double seconds);

    /// Unlocks it now.
    void stop();

    /// Called at every stop() and at the end of the countdown, when the keyboard is free again.
    std::function<void()> onEnd;

    HUDState& hudState() { return m_hudState; }

private:
    void tick();
    void updateHUD();

    KeyboardGrab& m_keyboard;
    Scheduler& m_scheduler;
    ShowHUD m_showHUD;
    HUDState m_hudState;
    std::unique_ptr<KeyboardGrab::Hold> m_hold;
    HUD m_hud;
    std::unique_ptr<RepeatingTimer> m_timer;
    std::unique_ptr<Timer> m_end; ///< comes in time also when the clock is set back
    QDateTime m_endDate;
    int m_wholeTime = 0; ///< in seconds
    Alive m_alive;
};

} // namespace quillet
