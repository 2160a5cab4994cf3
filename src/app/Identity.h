#pragma once

#include <QString>

namespace quillet {

/// The names under which other programs know this one.
namespace Identity {
inline const QString applicationID = QStringLiteral("org.quillet.Quillet");
inline const QString objectPath = QStringLiteral("/org/quillet/Quillet");
inline const QString controlInterface = QStringLiteral("org.quillet.Quillet.Control1");
QString version();
QByteArray versionLine();
} // namespace Identity

} // namespace quillet
