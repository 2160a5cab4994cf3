#pragma once

#include "platform/Commands.h"

#include <chrono>
#include <memory>
#include <QProcess>
#include <vector>

namespace quillet {

/// Runs programs as child processes, with nothing on their standard input and their complaints
/// dropped. Ends those that take longer than its patience, and those that still run when it dies.
class ProcessCommands : public Commands {
public:
    explicit ProcessCommands(std::chrono::milliseconds patience = std::chrono::seconds(5));
    ~ProcessCommands() override;

    void run(const QString& program, const QStringList& arguments, Completion completion) override;
    bool launch(const QString& program, const QStringList& arguments) override;

private:
    void finish(QProcess* process, const Completion& completion);

    std::chrono::milliseconds m_patience;
    std::vector<std::unique_ptr<QProcess>> m_running;
};

} // namespace quillet
