#pragma once

#include "platform/Platform.h"

#include <optional>
#include <variant>

namespace quillet {

/// Why no program can show itself here, for people; absent where one can. To be asked before a
/// QGuiApplication is made, which would abort the process.
std::optional<QString> whyNoDisplay();

/// The abilities of this desktop. Needs a QGuiApplication. Where the display cannot be used the
/// answer is the reason, for people.
std::variant<Platform, QString> makeLinuxPlatform(const QString& preferencesFile);

} // namespace quillet
