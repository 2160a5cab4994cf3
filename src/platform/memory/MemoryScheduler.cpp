#include "platform/memory/MemoryScheduler.h"

#include <optional>

namespace quillet {

/// Handles hold the queue weakly: a timer may outlive its scheduler.
class MemoryScheduler::PendingTask : public Timer {
public:
    PendingTask(std::weak_ptr<Queue> queue, Slot slot) : m_queue(std::move(queue)), m_slot(slot) {}

    ~PendingTask() override {
        if (const auto queue = m_queue.lock())
            queue->erase(m_slot);
    }

private:
    std::weak_ptr<Queue> m_queue;
    Slot m_slot;
};

class MemoryScheduler::Ticks : public RepeatingTimer {
public:
    Ticks(MemoryScheduler& scheduler, Duration interval, Task task)
        : m_scheduler(scheduler),
          m_queue(scheduler.m_queue),
          m_start(scheduler.m_elapsed),
          m_interval(std::max(interval, Duration(1))),
          m_task(std::move(task)) {
        wake();
    }

    ~Ticks() override { sleep(); }

    void sleep() override {
        if (const auto queue = m_queue.lock(); queue && m_slot)
            queue->erase(*m_slot);
        m_slot.reset();
    }

    void wake() override {
        if (m_slot || m_queue.expired())
            return;
        const auto ticksSoFar = (m_scheduler.m_elapsed - m_start) / m_interval;
        m_slot = m_scheduler.enqueue(m_start + (ticksSoFar + 1) * m_interval, [this] { tick(); });
    }

private:
    void tick() {
        m_slot.reset();
        wake();
        const Task task = m_task; // the task may destroy this timer
        task();
    }

    MemoryScheduler& m_scheduler;
    std::weak_ptr<Queue> m_queue;
    Duration m_start;
    Duration m_interval;
    Task m_task;
    std::optional<Slot> m_slot;
};

MemoryScheduler::MemoryScheduler() : m_epoch(QDate(2025, 3, 14), QTime(9, 0)) {}

QDateTime MemoryScheduler::now() const {
    return m_epoch.addMSecs(m_elapsed.count());
}

std::unique_ptr<Timer> MemoryScheduler::after(Duration delay, Task task) {
    const Slot slot = enqueue(m_elapsed + std::max(delay, Duration(0)), std::move(task));
    return std::make_unique<PendingTask>(m_queue, slot);
}

std::unique_ptr<RepeatingTimer> MemoryScheduler::every(Duration interval, Duration, Task task) {
    return std::make_unique<Ticks>(*this, interval, std::move(task));
}

void MemoryScheduler::background(Task work, Task done) {
    enqueue(m_elapsed, [work = std::move(work), done = std::move(done)] {
        work();
        done();
    });
}

void MemoryScheduler::advance(std::chrono::duration<double, std::milli> span) {
    const Duration target = m_elapsed + std::chrono::round<Duration>(span);
    while (!m_queue->empty() && m_queue->begin()->first.first <= target) {
        const auto next = m_queue->extract(m_queue->begin());
        m_elapsed = std::max(m_elapsed, next.key().first);
        ++m_wakeUps;
        next.mapped()();
    }
    m_elapsed = target;
}

void MemoryScheduler::setNow(const QDateTime& now) {
    m_epoch = now.addMSecs(-m_elapsed.count());
}

MemoryScheduler::Slot MemoryScheduler::enqueue(Duration due, Task task) {
    const Slot slot{due, m_sequence++};
    m_queue->emplace(slot, std::move(task));
    return slot;
}

} // namespace quillet
