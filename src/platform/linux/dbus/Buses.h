#pragma once

#include <functional>
#include <QDBusConnection>
#include <QDBusMessage>

namespace quillet {

/// The buses of the session and of the machine. One that is not there is not connected; calls on it
/// fail, and none is ever started. A system bus that accepts without answering counts as not there.
struct Buses {
    QDBusConnection session;
    QDBusConnection system;

    static Buses standard();
};

/// Calls a method without waiting. `done` runs once with the reply or an error message, never
/// inside the call, and not once `context` is gone. A negative timeout (milliseconds) is the bus
/// library's own.
void callAsync(const QDBusConnection& bus, const QDBusMessage& message, QObject* context,
               std::function<void(const QDBusMessage& reply)> done, int timeout = -1);

} // namespace quillet
