#pragma once

#include "platform/Scheduler.h"

#include <QObject>
#include <QThreadPool>

namespace quillet {

/// The event loop of the thread that makes it, and two threads for background work. Waits for
/// running work when it dies; work that has not begun by then never runs.
class LinuxScheduler : public Scheduler {
public:
    LinuxScheduler();
    ~LinuxScheduler() override;

    QDateTime now() const override;
    std::unique_ptr<Timer> after(Duration delay, Task task) override;
    std::unique_ptr<RepeatingTimer> every(Duration interval, Duration tolerance,
                                          Task task) override;
    void background(Task work, Task done) override;

private:
    QObject m_deliveries; // what finished work posts its `done` to
    QThreadPool m_workers;
};

} // namespace quillet
