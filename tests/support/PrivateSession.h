#pragma once

#include "support/PrivateBus.h"

#include <memory>
#include <optional>
#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace quillet {

/// What a program that ran to its end came to.
struct RunResult {
    int exitCode = -1; ///< -1 where it crashed, hung or could not be started
    QByteArray output;
    QByteArray error;
};

/// A program that was started. It ends with its handle: politely where it lets itself be asked.
struct ProcessEnder {
    void operator()(QProcess* process) const;
};
using ProcessHandle = std::unique_ptr<QProcess, ProcessEnder>;

/// A session bus where one is asked for, a runtime folder, and a home folder that is thrown away.
/// Programs started here see nothing else, and end with the test program should that die first.
class PrivateSession {
public:
    enum class Bus { present, absent };
    explicit PrivateSession(Bus bus);

    QString busAddress() const { return m_bus ? m_bus->address() : QString(); }
    QString runtimeFolder() const { return m_runtime.path(); }

    /// Gives what is started from now on an empty home.
    void renewHome();
    QString home() const { return m_home->path(); }
    QString configFolder() const { return home() + QStringLiteral("/config"); }
    QString dataFolder() const { return home() + QStringLiteral("/data"); }

    ProcessHandle start(const QString& program, const QStringList& arguments,
                        const QStringList& environment = {}) const;

    /// Runs a program to its end; one that hangs is killed after half a minute.
    RunResult run(const QString& program, const QStringList& arguments,
                  const QByteArray& input = {}, const QStringList& environment = {}) const;

protected:
    QStringList m_environment; ///< of all that is started, besides the folders of the home

private:
    std::optional<PrivateBus> m_bus;
    QTemporaryDir m_runtime;
    std::unique_ptr<QTemporaryDir> m_home;
};

} // namespace quillet
