#pragma once

#include <optional>
#include <QDBusConnection>

namespace quillet {

/// The session bus where there is one. Never starts a bus.
std::optional<QDBusConnection> sessionBus();

/// The bus address of a socket at this path.
QString socketAddress(const QString& path);

} // namespace quillet
