#pragma once

#include <optional>
#include <QString>

namespace quillet {

/// The private folder (mode 0700, this user's) for what lives as long as a session: the lock, the
/// socket, the log. It is $XDG_RUNTIME_DIR/quillet, else quillet-UID in the folder for temporary
/// files. A place that belongs to another user is never used. Absent, with one logged line, when
/// there is no safe place.
std::optional<QString> runtimeFolder();

} // namespace quillet
