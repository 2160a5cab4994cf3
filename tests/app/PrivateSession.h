#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <vector>

namespace quillet {

/// What a program that ran to its end came to.
struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray error;
};

/// Folders and, where asked for, a session bus that no other test or program uses, and the real
/// program on a desktop in memory within them. Ends whatever was started.
class PrivateSession {
public:
    enum class Bus { present, absent };

    explicit PrivateSession(Bus bus);
    ~PrivateSession();

    QString runtimeFolder() const { return m_folder.path() + QStringLiteral("/run/quillet"); }
    QString dataFolder() const { return m_folder.path() + QStringLiteral("/data/quillet"); }
    const QString& busAddress() const { return m_busAddress; }

    /// Puts texts into the history, the last one newest. For a program that does not run.
    void fillHistory(const std::vector<QByteArray>& texts) const;

    /// Starts the program and leaves it running.
    QProcess& launch(const QStringList& arguments = {});

    /// Starts the program and returns once it answers.
    QProcess& start();

    Outcome run(const QStringList& arguments) const;
    Outcome shell(const QString& script) const;
    QJsonObject status() const;

    /// Process ids of the program within this session.
    std::vector<qint64> processes() const;

private:
    std::unique_ptr<QProcess> prepare(const QString& program, const QStringList& arguments) const;

    QTemporaryDir m_folder;
    QProcess m_bus;
    QString m_busAddress;
    std::vector<std::unique_ptr<QProcess>> m_launched;
};

} // namespace quillet
