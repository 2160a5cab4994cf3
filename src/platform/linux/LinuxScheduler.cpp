#include "platform/linux/LinuxScheduler.h"

#include <QPointer>
#include <QTimer>

namespace quillet {

namespace {

using Clock = std::chrono::steady_clock;
using Duration = Scheduler::Duration;

class PendingTask : public Timer {
public:
    PendingTask(Duration delay, Scheduler::Task task) : m_task(std::move(task)) {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout([this] {
            const auto due = std::exchange(m_task, nullptr); // the task may destroy this timer
            due();
        });
        m_timer.start(std::max(delay, Duration(0)));
    }

private:
    Scheduler::Task m_task;
    QTimer m_timer;
};

class Ticks : public RepeatingTimer {
public:
    Ticks(Duration interval, Duration tolerance, Scheduler::Task task)
        : m_interval(std::max(interval, Duration(1))),
          m_tolerance(tolerance),
          m_task(std::move(task)) {
        m_timer.setSingleShot(true);
        m_timer.callOnTimeout([this] { tick(); });
        wake();
    }

    void sleep() override { m_timer.stop(); }

    void wake() override {
        if (!m_timer.isActive())
            arm();
    }

private:
    void tick() {
        m_lastTick = m_armedTick;
        arm(); // at once, so that the task finds a timer that is awake
        const QPointer<QTimer> timer = &m_timer;
        const auto task = m_task; // the task may destroy this timer
        task();
        if (timer && timer->isActive())
            arm(); // past the ticks that the task itself took too long for
    }

    void arm() {
        const auto elapsed = Clock::now() - m_start;
        m_armedTick = std::max<qint64>(m_lastTick, elapsed / m_interval) + 1;
        const auto remaining = std::chrono::ceil<Duration>(m_armedTick * m_interval - elapsed);
        // A coarse timer is off by up to a twentieth to either side; it is used where that stays
        // within the tolerance, and aimed so that it is never early.
        const bool coarse = remaining / 20 < m_tolerance / 2;
        m_timer.setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer);
        m_timer.start(coarse ? remaining + m_tolerance / 2 : remaining);
    }

    const Clock::time_point m_start = Clock::now();
    const Duration m_interval;
    const Duration m_tolerance;
    const Scheduler::Task m_task;
    qint64 m_lastTick = 0;
    qint64 m_armedTick = 0;
    QTimer m_timer;
};

} // namespace

LinuxScheduler::LinuxScheduler() {
    m_workers.setMaxThreadCount(2);
    m_workers.setExpiryTimeout(1000); // an idle thread is a wake-up to come
}

LinuxScheduler::~LinuxScheduler() {
    m_workers.clear();
    m_workers.waitForDone();
}

QDateTime LinuxScheduler::now() const {
    return QDateTime::currentDateTime();
}

std::unique_ptr<Timer> LinuxScheduler::after(Duration delay, Task task) {
    return std::make_unique<PendingTask>(delay, std::move(task));
}

std::unique_ptr<RepeatingTimer> LinuxScheduler::every(Duration interval, Duration tolerance,
                                                      Task task) {
    return std::make_unique<Ticks>(interval, tolerance, std::move(task));
}

void LinuxScheduler::background(Task work, Task done) {
    m_workers.start([this, work = std::move(work), done = std::move(done)]() mutable {
        work();
        QMetaObject::invokeMethod(&m_deliveries, std::move(done), Qt::QueuedConnection);
    });
}

} // namespace quillet
