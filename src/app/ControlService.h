#pragma once

#include "app/CommandLine.h"
#include "app/VerbResult.h"

#include <functional>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServer>
#include <QObject>

namespace quillet {

/// Where the running Quillet listens beside the bus.
QString controlSocket(const QString& runtimeFolder);

/// The door through which other processes reach the running Quillet: one object, on the session
/// bus under the application's name and on a private socket in the runtime folder, so that verbs
/// also work where there is no bus. Owned by the process's start; hands parsed commands to
/// `execute` on the main thread, once the event loop runs.
class ControlService : public QObject, public QDBusContext {
    Q_OBJECT

public:
    using Reply = std::function<void(VerbResult)>;
    using Execute = std::function<void(const Command&, const Reply&)>;

    ControlService(const QString& runtimeFolder, Execute execute);
    ~ControlService() override;

    /// Serves the object. False when another process has the application's name on the bus.
    bool open();

    /// From now on nobody finds this process. Who comes waits for its end, or for the next one.
    void close();

    void run(const QStringList& arguments, const Reply& reply);

private:
    void listen();
    void serve(QDBusConnection connection);

    QString m_socket;
    Execute m_execute;
    std::unique_ptr<QDBusServer> m_server;
};

} // namespace quillet
