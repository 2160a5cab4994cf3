#pragma once

#include "platform/Commands.h"

namespace quillet {

/// A settings file that its desktop has no program for: `ini FILE KEY` puts out what is stored,
/// nothing where nothing is, and `ini FILE KEY VALUE` stores a value or, if that is empty, forgets
/// what is stored. In a section other than "General" the key is SECTION/KEY. Values are taken as
/// they stand in the file, with their quotes and escapes. Nothing but the one line changes.
///
/// Waits for the disk; runs on any thread.
CommandResult runIni(const QStringList& arguments);

} // namespace quillet
