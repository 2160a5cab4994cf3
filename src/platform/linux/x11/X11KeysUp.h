#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "platform/Scheduler.h"

namespace quillet {

/// Waits for the user's hands to be off keys and buttons, so that no release follows what is done
/// then.
class X11KeysUp {
public:
    X11KeysUp(X11Connection& connection, Scheduler& scheduler)
        : m_connection(connection), m_scheduler(scheduler) {}

    /// Runs `task` once nothing has been down for 300 ms, or after ten seconds whatever is down:
    /// there may be a book on the keyboard. Takes the place of a task that still waits.
    void then(Scheduler::Task task);

private:
    bool isAnythingDown() const;
    void look();

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    Scheduler::Task m_task;
    std::unique_ptr<RepeatingTimer> m_looking;
    int m_looks = 0;
    int m_looksWithNothingDown = 0; ///< in a row, the last one included
};

} // namespace quillet
