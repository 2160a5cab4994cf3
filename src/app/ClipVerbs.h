#pragma once

#include "app/CommandLine.h"
#include "app/VerbResult.h"

namespace quillet {

class ClipboardStore;

/// Carries out a verb on the history.
VerbResult runClipVerb(const Command& command, ClipboardStore& store);

} // namespace quillet
