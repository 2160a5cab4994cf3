#include "platform/linux/dbus/Buses.h"

#include <algorithm>
#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QFile>
#include <QLoggingCategory>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace quillet {

Q_LOGGING_CATEGORY(logBuses, "quillet.buses", QtWarningMsg)

namespace {

constexpr timeval patience{2, 0};

/// The socket of a bus, where its address is that of one and no more.
QByteArray socketPath(const QByteArray& address) {
    const QByteArray prefix = "unix:path=";
    const QByteArray path = address.startsWith(prefix) ? address.mid(prefix.size()) : QByteArray();
    return path.contains(';') || path.contains('%') ? QByteArray() : path.split(',').constFirst();
}

/// False where whoever listens there accepts and does not answer: connecting to it for good would
/// halt the bus library, and all who use it, for half a minute.
bool answers(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || std::size_t(path.size()) >= sizeof address.sun_path)
        return true; // the library knows better
    std::ranges::copy(path, address.sun_path);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    for (const int direction : {SO_SNDTIMEO, SO_RCVTIMEO})
        setsockopt(socket, SOL_SOCKET, direction, &patience, sizeof patience);
    // A bus answers this with the ways in which one may say who one is.
    constexpr char question[] = "\0AUTH\r\n";
    constexpr std::size_t length = sizeof question - 1;
    char answer = 0;
    const bool isAnswered =
        connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
        send(socket, question, length, MSG_NOSIGNAL) == ssize_t(length) &&
        recv(socket, &answer, 1, 0) == 1;
    close(socket);
    return isAnswered;
}

QDBusConnection systemBus() {
    const QByteArray address = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    const QByteArray path =
        address.isEmpty() ? QByteArray("/var/run/dbus/system_bus_socket") : socketPath(address);
    if (answers(path))
        return QDBusConnection::systemBus();
    qCWarning(logBuses, "the system's bus does not answer; what it offers is left out");
    return QDBusConnection(QString());
}

} // namespace

Buses Buses::standard() {
    // Without an address, the bus library would launch a bus of its own for nobody else.
    const bool hasSession = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
                            QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
    return {hasSession ? QDBusConnection::sessionBus() : QDBusConnection(QString()), systemBus()};
}

void callAsync(const QDBusConnection& bus, const QDBusMessage& message, QObject* context,
               std::function<void(const QDBusMessage& reply)> done, int timeout) {
    if (!bus.isConnected()) {
        // The library would never report the end of such a call.
        const auto failure = QDBusMessage::createError(QDBusError::Disconnected, u"no bus"_s);
        QMetaObject::invokeMethod(
            context, [done = std::move(done), failure] { done(failure); }, Qt::QueuedConnection);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, timeout), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [done = std::move(done)](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         done(finished->reply());
                     });
}

} // namespace quillet
