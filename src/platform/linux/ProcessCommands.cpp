#include "platform/linux/ProcessCommands.h"

#include <algorithm>
#include <QLoggingCategory>
#include <QTimer>

namespace quillet {

Q_LOGGING_CATEGORY(logCommands, "quillet.commands", QtWarningMsg)

namespace {

const QString overrun = QStringLiteral("overrun"); // the name of a deadline that was missed

} // namespace

ProcessCommands::ProcessCommands(std::chrono::milliseconds patience) : m_patience(patience) {}

ProcessCommands::~ProcessCommands() {
    for (const auto& process : m_running) {
        process->kill();
        process->waitForFinished();
    }
}

void ProcessCommands::run(const QString& program, const QStringList& arguments,
                          Completion completion) {
    QProcess* process = m_running.emplace_back(std::make_unique<QProcess>()).get();
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    const auto end = [this, process, completion = std::move(completion)] {
        finish(process, completion);
    };
    // Queued, because start() may report failure at once. The process itself is the context: the
    // notice goes with it.
    QObject::connect(process, &QProcess::finished, process, end, Qt::QueuedConnection);
    QObject::connect(
        process, &QProcess::errorOccurred, process,
        [end](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart)
                end();
        },
        Qt::QueuedConnection);
    process->start(program, arguments);
    auto* deadline = new QTimer(process);
    deadline->setSingleShot(true);
    deadline->callOnTimeout([process, deadline] {
        qCWarning(logCommands, "%s takes too long and is ended", qPrintable(process->program()));
        deadline->setObjectName(overrun);
        process->kill();
    });
    deadline->start(m_patience);
}

bool ProcessCommands::launch(const QString& program, const QStringList& arguments) {
    return QProcess::startDetached(program, arguments);
}

void ProcessCommands::finish(QProcess* process, const Completion& completion) {
    const auto running = std::find_if(m_running.begin(), m_running.end(),
                                      [&](const auto& entry) { return entry.get() == process; });
    // This runs in an event of the process, and `completion` may destroy these commands.
    running->release()->deleteLater();
    m_running.erase(running);
    CommandResult result;
    if (process->exitStatus() == QProcess::NormalExit &&
        process->error() != QProcess::FailedToStart)
        result.exitCode = process->exitCode();
    result.tookTooLong = process->findChild<QTimer*>(overrun) != nullptr;
    result.output = process->readAllStandardOutput();
    completion(std::move(result));
}

} // namespace quillet
