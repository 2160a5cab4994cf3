#pragma once

#include <optional>
#include <QString>

namespace quillet {

/// The program with a desktop's settings. `currentDesktop` is what the session says of itself in
/// XDG_CURRENT_DESKTOP: names between colons, the nearest first.
std::optional<QString> settingsProgram(const QString& currentDesktop);

} // namespace quillet
