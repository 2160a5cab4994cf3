#pragma once

#include <functional>
#include <map>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>

namespace quillet {

/// A message bus that nobody else uses. It starts no program by itself, whichever are installed:
/// those of a whole desktop would answer in place of a test's own.
class PrivateBus {
public:
    PrivateBus();
    ~PrivateBus();
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    /// A connection of its own, as another process would have; it ends with the bus.
    QDBusConnection connect();

    const QString& address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_connections;
};

/// A program with one object on a bus that answers as a test says. It takes its name when made and
/// leaves the bus when destroyed. It lives on this thread's event loop.
class FakeService : public QDBusVirtualObject {
public:
    /// The reply to a call; an invalid message is none for now.
    using Answer = std::function<QDBusMessage(const QDBusMessage& call)>;

    FakeService(PrivateBus& bus, const QString& name, const QString& path);
    ~FakeService() override;

    /// By the names of methods. Others are unknown to it.
    std::map<QString, Answer> answers;

    /// Answers a call that got no answer before.
    void send(const QDBusMessage& message) { m_connection.send(message); }

    void emitSignal(const QString& interface, const QString& name, const QVariantList& arguments);

    const QDBusConnection& connection() const { return m_connection; }

    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QDBusConnection m_connection;
    QString m_path;
};

} // namespace quillet
