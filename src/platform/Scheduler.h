#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <QDateTime>

namespace quillet {

/// A pending task. Destroying it cancels the task; the task itself may do so while it runs.
class Timer {
public:
    virtual ~Timer() = default;
};

/// A task on a fixed grid of times: start + k × interval.
class RepeatingTimer : public Timer {
public:
    /// Runs no tick until wake(). Costs no wake-up meanwhile.
    virtual void sleep() = 0;

    /// Arms the next tick of the grid that lies after now. No effect on a timer that is awake.
    virtual void wake() = 0;
};

/// Time, and work at a later time. All tasks run on the thread that owns the scheduler; a task
/// that is due runs from the event loop, never from inside the call that asked for it.
class Scheduler {
public:
    using Task = std::function<void()>;
    using Duration = std::chrono::milliseconds;

    virtual ~Scheduler() = default;

    /// The wall-clock time, in the local time zone.
    virtual QDateTime now() const = 0;

    /// Runs `task` once, `delay` from now.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(Duration delay, Task task) = 0;

    /// Runs `task` at every tick of the grid. A tick may come up to `tolerance` late so that the
    /// system can join wake-ups; lateness does not shift the grid, and missed ticks are not
    /// made up for.
    [[nodiscard]] virtual std::unique_ptr<RepeatingTimer> every(Duration interval,
                                                                Duration tolerance, Task task) = 0;

    /// Runs `work` off the main thread, then `done` on it. Jobs may overtake each other. `work`
    /// must touch nothing but what it captured; `done` is dropped when the scheduler dies first.
    virtual void background(Task work, Task done) = 0;
};

} // namespace quillet
