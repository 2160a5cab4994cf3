#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11KeysUp.h"

namespace quillet {

/// The display's sleep, as far as it is the X server's business.
class X11DisplayPower {
public:
    /// Keeps the display on and its screen saver away while it lives.
    using Suspension = std::shared_ptr<void>;

    X11DisplayPower(X11Connection& connection, Scheduler& scheduler);

    bool canSuspend() const { return m_canSuspend; }

    /// Null where the server cannot. Ends with the connection, however that ends.
    [[nodiscard]] Suspension suspend();

    /// Why the display cannot be turned off, for people; empty where it can.
    const QString& whyNoSleep() const { return m_whyNoSleep; }

    /// Turns the display off, where it can be, once no key or button is down any more.
    void sleep();

private:
    void turnOff();

    X11Connection& m_connection;
    X11KeysUp m_keysUp;
    bool m_canSuspend = false;
    QString m_whyNoSleep;
};

} // namespace quillet
