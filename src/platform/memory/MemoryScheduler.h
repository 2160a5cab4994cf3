#pragma once

#include "platform/Scheduler.h"

#include <map>

namespace quillet {

/// Clock and queue in one: time stands still until advance() moves it from one due task to the
/// next. Background work runs on the same thread at the next advance, also advance(0ms).
class MemoryScheduler : public Scheduler {
public:
    MemoryScheduler();

    QDateTime now() const override;
    std::unique_ptr<Timer> after(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> every(Duration interval, Duration tolerance,
                                          Task task) override;
    void background(Task work, Task done) override;

    /// Moves time on and runs what falls due on the way, in order, including what is scheduled
    /// meanwhile.
    void advance(std::chrono::duration<double, std::milli> span);

    /// Sets the wall clock, as a user or a time server does. Pending tasks keep their distance.
    void setNow(const QDateTime& now);

    /// How far time has moved, whatever the wall clock says.
    Duration elapsed() const { return m_elapsed; }

    /// How many tasks have run so far, ticks included: what a process woke up for.
    int wakeUps() const { return m_wakeUps; }

    /// Whether nothing is pending, so that no time at all would wake anything.
    bool isIdle() const { return m_queue->empty(); }

private:
    /// Due time, then order of scheduling.
    using Slot = std::pair<Duration, qint64>;
    using Queue = std::map<Slot, Task>;
    class PendingTask;
    class Ticks;

    Slot enqueue(Duration due, Task task);

    std::shared_ptr<Queue> m_queue = std::make_shared<Queue>();
    Duration m_elapsed{0};
    qint64 m_sequence = 0;
    int m_wakeUps = 0;
    QDateTime m_epoch;
};

} // namespace quillet
