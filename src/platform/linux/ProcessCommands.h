#pragma once

#include "platform/Commands.h"

#include <memory>
#include <QProcess>
#include <vector>

namespace quillet {

/// Runs programs as child processes, with nothing on their standard input and their complaints
/// dropped. Ends those that still run when it dies.
class ProcessCommands : public Commands {
public:
    ProcessCommands();
    ~ProcessCommands() override;

    void run(const QString& program, const QStringList& arguments, Completion completion) override;
    bool launch(const QString& program, const QStringList& arguments) override;

private:
    void finish(QProcess* process, const Completion& completion);

    std::vector<std::unique_ptr<QProcess>> m_running;
};

} // namespace quillet
