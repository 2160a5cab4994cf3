#pragma once

#include "support/PrivateSession.h"

#include <QJsonObject>
#include <vector>

namespace quillet {

/// The real program on a desktop in memory, in a session that nobody else uses. Ends whatever was
/// started.
class ProcessSession {
public:
    using Bus = PrivateSession::Bus;

    explicit ProcessSession(Bus bus) : m_session(bus) {}
    ~ProcessSession();

    QString runtimeFolder() const { return m_session.runtimeFolder() + QStringLiteral("/quillet"); }
    QString dataFolder() const { return m_session.dataFolder() + QStringLiteral("/quillet"); }
    QString busAddress() const { return m_session.busAddress(); }

    /// Puts texts into the history, the last one newest. For a program that does not run.
    void fillHistory(const std::vector<QByteArray>& texts) const;

    /// Starts the program and leaves it running.
    QProcess& launch(const QStringList& arguments = {});

    /// Starts the program and returns once it answers.
    QProcess& start();

    RunResult run(const QStringList& arguments) const;
    RunResult shell(const QString& script) const;
    QJsonObject status() const;

    /// Process ids of the program within this session.
    std::vector<qint64> processes() const;

private:
    PrivateSession m_session;
    std::vector<ProcessHandle> m_launched;
};

} // namespace quillet
