#pragma once

#include "platform/Scheduler.h"

#include <functional>
#include <QDateTime>

namespace quillet {

/// How something gets from one state to another: progress over time.
struct Motion {
    using Duration = Scheduler::Duration;

    Duration duration;
    std::function<double(Duration elapsed)> progress; ///< 0 at the start; a spring may pass 1

    static Motion easeOut(Duration duration);

    /// `response` is the period without damping; it lasts until it has come to rest.
    static Motion spring(Duration response, double damping);
};

/// One value on its way, at sixty steps a second while it moves and at no cost otherwise. Starting
/// anew replaces what runs; destroying it stops without a further call. For a user who wants less
/// motion it gets there in one step.
class Animation {
public:
    using Step = std::function<void(double progress)>;

    /// For every animation that starts from now on. For app/ alone.
    static void setMotionReduced(bool reduced) { isMotionReduced = reduced; }

    explicit Animation(Scheduler& scheduler) : m_scheduler(scheduler) {}

    /// Calls `step` for every frame, last with exactly 1, then `done`. Never inside this call.
    void start(Motion motion, Step step, std::function<void()> done = {});

    /// Stays where it is; `done` is not called.
    void stop() { m_timer.reset(); }

    bool isRunning() const { return m_timer != nullptr; }

private:
    static inline bool isMotionReduced = false;

    void tick();

    Scheduler& m_scheduler;
    Motion m_motion;
    Step m_step;
    std::function<void()> m_done;
    QDateTime m_lastTick;
    Scheduler::Duration m_elapsed{0};
    std::unique_ptr<RepeatingTimer> m_timer;
};

} // namespace quillet
