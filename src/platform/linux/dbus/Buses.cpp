#include "platform/linux/dbus/Buses.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QFile>

using namespace Qt::StringLiterals;

namespace quillet {

Buses Buses::standard() {
    // Without an address, the bus library would launch a bus of its own for nobody else.
    const bool hasSession = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
                            QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
    return {hasSession ? QDBusConnection::sessionBus() : QDBusConnection(QString()),
            QDBusConnection::systemBus()};
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
