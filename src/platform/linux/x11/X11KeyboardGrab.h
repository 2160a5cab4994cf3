#pragma once

#include "platform/KeyboardGrab.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/Scheduler.h"

namespace quillet {

class X11Panels;

/// Active grabs of all master keyboards, without an interest in any of their events. They stand
/// above other programs' shortcuts, cover keyboards that are plugged in later, and end with the
/// connection, so a Quillet that crashes leaves nobody without a keyboard. The devices behind the
/// masters are left alone: a grab would detach them, and desktops would set them up anew. Locks
/// still switch inside the server and are put back. Outlives its holds.
class X11KeyboardGrab : public KeyboardGrab {
public:
    X11KeyboardGrab(X11Connection& connection, X11Panels& panels, Scheduler& scheduler);
    ~X11KeyboardGrab() override;

    std::unique_ptr<Hold> hold() override;

private:
    class X11Hold;

    /// What keys and their combinations switch on and off in the server itself.
    struct Locks {
        uint8_t modifiers = 0;
        uint8_t group = 0;
    };

    std::vector<uint16_t> keyboards() const;
    bool grabAll();
    void ungrabAll();
    Locks locks() const;
    void restoreLocks();
    bool isAnyKeyDown() const;
    void letGo();
    void release();

    X11Connection& m_connection;
    X11Panels& m_panels;
    Scheduler& m_scheduler;
    bool m_isAvailable = false;
    std::vector<uint16_t> m_held; ///< also while keys are still down after the hold
    Locks m_locks;
    std::unique_ptr<RepeatingTimer> m_keysUp; ///< after the hold, until the keys are up
    int m_looksLeft = 0;
};

} // namespace quillet
