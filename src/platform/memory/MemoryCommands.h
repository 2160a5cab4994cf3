#pragma once

#include "platform/Alive.h"
#include "platform/Commands.h"
#include "platform/Scheduler.h"

#include <map>
#include <vector>

namespace quillet {

/// Programs with scripted results. They end at the scheduler's next advance.
class MemoryCommands : public Commands {
public:
    explicit MemoryCommands(Scheduler& scheduler) : m_scheduler(scheduler) {}

    void run(const QString& program, const QStringList& arguments, Completion completion) override;
    bool launch(const QString& program, const QStringList& arguments) override;

    /// What a program comes to, by its whole command line with single spaces or, failing that, by
    /// its name alone. A program that is not listed cannot be started.
    std::map<QString, CommandResult> results;

    /// The command line of every call.
    QStringList calls;

    /// The program and the arguments of every one that was launched.
    std::vector<QStringList> launched;

private:
    Scheduler& m_scheduler;
    Alive m_alive;
};

} // namespace quillet
