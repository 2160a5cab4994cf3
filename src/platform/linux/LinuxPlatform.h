#pragma once

#include "platform/Platform.h"

#include <variant>

namespace quillet {

/// The abilities of this desktop. Needs a QGuiApplication. Where the display cannot be used the
/// answer is the reason, for people.
std::variant<Platform, QString> makeLinuxPlatform(const QString& preferencesFile);

} // namespace quillet
