#pragma once

#include "platform/Workspace.h"

namespace quillet {

/// Whether an application is meant by a list of identifiers. The identifiers that the list starts
/// out with also mean the applications that do the same job under another identifier here.
bool isIgnoredApplication(const RunningApplication& application, const QStringList& ignored);

} // namespace quillet
