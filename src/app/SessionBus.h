#pragma once

#include <optional>
#include <QDBusConnection>

namespace quillet {

/// The session bus where there is one. Never starts a bus.
std::optional<QDBusConnection> sessionBus();

/// Where the running Quillet listens beside the bus.
QString controlSocketAddress(const QString& runtimeFolder);

} // namespace quillet
