#pragma once

#include "app/CommandLine.h"
#include "app/VerbResult.h"

namespace quillet {

class SwitchCenter;

/// Carries out a verb that turns a switch of the system.
VerbResult runSwitchVerb(const Command& command, SwitchCenter& switches);

} // namespace quillet
