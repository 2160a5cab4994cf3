#include "clipboard/WalCheckpointer.h"
#include "clipboard/SqliteConnection.h"

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

WalCheckpointer::WalCheckpointer(QString databasePath, Scheduler& scheduler)
    : m_databasePath(std::move(databasePath)), m_scheduler(scheduler) {}

void WalCheckpointer::runSoon() {
    if (!m_pending)
        m_pending = m_scheduler.after(1s, [this] { run(); });
}

void WalCheckpointer::run() {
    m_pending.reset();
    if (m_isRunning) {
        runSoon();
        return;
    }
    m_isRunning = true;
    m_scheduler.background(
        [path = m_databasePath] {
            SqliteConnection connection(path, SqliteConnection::Access::readWrite);
            // The first waits for the disk without holding up anyone who writes; little is left to
            // do for the second, which does. What fails now is done the next time.
            connection.value(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
            connection.value(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
        },
        m_alive([this] { m_isRunning = false; }));
}

} // namespace quillet
