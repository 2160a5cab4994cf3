#include "app/ControlService.h"

#include "app/ControlAdaptors.h"
#include "app/Identity.h"
#include "app/Logging.h"
#include "app/SessionBus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>

using namespace Qt::StringLiterals;

namespace quillet {

ControlService::ControlService(const QString& runtimeFolder, Execute execute)
    : m_socket(controlSocketAddress(runtimeFolder)), m_execute(std::move(execute)) {
    new ControlAdaptor(*this);
    new ApplicationAdaptor(*this);
}

ControlService::~ControlService() = default;

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
    m_server = std::make_unique<QDBusServer>(m_socket);
    if (!m_server->isConnected())
        qCWarning(logApp).noquote() << "No control socket:" << m_server->lastError().message();
    connect(m_server.get(), &QDBusServer::newConnection, this,
            [this](const QDBusConnection& connection) { serve(connection); });
    return true;
}

void ControlService::serve(QDBusConnection connection) {
    connection.registerObject(Identity::objectPath, this, QDBusConnection::ExportAdaptors);
}

VerbResult ControlService::run(const QStringList& arguments) {
    const auto parsed = parseCommandLine(arguments);
    if (const auto* error = std::get_if<UsageError>(&parsed))
        return {ExitCode::usage, {}, error->text};
    return m_execute(std::get<Command>(parsed));
}

} // namespace quillet
