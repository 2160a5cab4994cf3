#pragma once

#include <QString>

namespace quillet {

/// Decides which process is the running Quillet: the one that holds the lock on a file in the
/// runtime folder, which also tells its process id. The kernel lets go of the lock when the
/// process ends in whatever way, so a left-over file means nothing.
class InstanceLock {
public:
    explicit InstanceLock(const QString& folder);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    /// Takes the lock. False when another process has it, or where no file can be made.
    bool acquire();

    /// Whether another process has the lock. Does not disturb anyone who is about to take it.
    bool isHeldElsewhere() const;

private:
    int m_file = -1;
};

} // namespace quillet
