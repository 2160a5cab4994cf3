#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "platform/Scheduler.h"

#include <QString>

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

    /// Turns the display off once keys and buttons have been up for a moment. Only where it can be.
    void sleep();

private:
    bool isAnythingDown() const;
    void lookAtKeys();
    void turnOff();

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    bool m_canSuspend = false;
    QString m_whyNoSleep;
    std::unique_ptr<RepeatingTimer> m_waiting; ///< for keys and buttons to come up
    int m_looks = 0;
    int m_quietLooks = 0; ///< in a row, the last one included
};

} // namespace quillet
