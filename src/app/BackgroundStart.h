#pragma once

#include <optional>
#include <QString>
#include <sys/types.h>

namespace quillet {

/// Starts this program's service in a session of its own, so that it outlives the terminal and
/// the verb. Its standard error stays the verb's until it is up: what stops a start is shown to
/// whoever caused it.
class BackgroundStart {
public:
    /// False when no process could be made.
    bool start();

    bool isRunning();

    /// Whether the last start ended in failure, rather than because another one was first.
    bool hasFailed() const { return m_failed; }

private:
    std::optional<pid_t> m_process;
    bool m_failed = false;
};

/// Called by the service once it is up: lets go of the verb's standard error and logs to a file
/// in the runtime folder instead.
void moveStandardErrorToLog(const QString& runtimeFolder);

} // namespace quillet
