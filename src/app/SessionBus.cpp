#include "app/SessionBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace quillet {

std::optional<QDBusConnection> sessionBus() {
    // Without an address, the bus library would launch a bus of its own for nobody else.
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") &&
        !QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s))
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

QString socketAddress(const QString& path) {
    return u"unix:path="_s + QString::fromLatin1(path.toUtf8().toPercentEncoding("/"));
}

} // namespace quillet
