#pragma once

#include "platform/Alive.h"
#include "platform/Scheduler.h"

namespace quillet {

/// Folds the database's write-ahead log back into the database and empties it, so that it stays
/// small and deleted text does not live on in it. Works in the background through a connection of
/// its own: it has to wait for the disk.
class WalCheckpointer {
public:
    WalCheckpointer(QString databasePath, Scheduler& scheduler);

    /// Runs once within a second or two, however often it is asked meanwhile.
    void runSoon();

private:
    void run();

    QString m_databasePath;
    Scheduler& m_scheduler;
    std::unique_ptr<Timer> m_pending;
    bool m_isRunning = false;
    Alive m_alive;
};

} // namespace quillet
