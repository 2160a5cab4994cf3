#include "app/ControlService.h"

#include "app/ControlAdaptors.h"
#include "app/Identity.h"
#include "app/Logging.h"
#include "app/SessionBus.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QFile>

using namespace Qt::StringLiterals;

namespace quillet {

QString controlSocket(const QString& runtimeFolder) {
    return runtimeFolder + u"/control"_s;
}

ControlService::ControlService(const QString& runtimeFolder, Execute execute)
    : m_socket(controlSocket(runtimeFolder)), m_execute(std::move(execute)) {
    new ControlAdaptor(*this);
    new ApplicationAdaptor(*this);
}

ControlService::~ControlService() {
    close();
}

void ControlService::close() {
    if (m_server)
        QFile::remove(m_socket);
    m_server.reset();
    if (auto bus = sessionBus()) {
        bus->unregisterObject(Identity::objectPath);
        bus->interface()->unregisterService(Identity::applicationID);
    }
}

bool ControlService::open() {
    if (auto bus = sessionBus()) {
        // Whoever sees the name must find the object behind it.
        serve(*bus);
        const auto reply = bus->interface()->registerService(
            Identity::applicationID, QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
        if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceNotRegistered)
            return false;
        if (!reply.isValid())
            qCWarning(logApp).noquote() << "No name on the session bus:" << reply.error().message();
    }
    listen();
    return true;
}

/// The toolkit forgets who connects while its server is being made. So the socket gets the name
/// under which clients look for it when that is over.
void ControlService::listen() {
    const QString unfinished = m_socket + u".new"_s;
    auto server = std::make_unique<QDBusServer>(socketAddress(unfinished));
    connect(server.get(), &QDBusServer::newConnection, this,
            [this](const QDBusConnection& connection) { serve(connection); });
    if (!server->isConnected())
        qCWarning(logApp).noquote() << "No control socket:" << server->lastError().message();
    else if (std::rename(QFile::encodeName(unfinished).constData(),
                         QFile::encodeName(m_socket).constData()) != 0)
        qCWarning(logApp).noquote() << "No control socket:" << std::strerror(errno);
    else
        m_server = std::move(server);
}

void ControlService::serve(QDBusConnection connection) {
    connection.registerObject(Identity::objectPath, this, QDBusConnection::ExportAdaptors);
}

void ControlService::run(const QStringList& arguments, const Reply& reply) {
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed))
        return reply({ExitCode::usage, {}, error->text, {}});
    m_execute(std::get<Command>(parsed), reply);
}

} // namespace quillet
