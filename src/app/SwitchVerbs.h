#pragma once

#include "app/CommandLine.h"
#include "app/VerbResult.h"

#include <QJsonObject>

namespace quillet {

class SwitchCenter;

/// Carries out a verb that turns a switch of the system.
VerbResult runSwitchVerb(const Command& command, SwitchCenter& switches);

/// How the switches stand. `awakeUntil` is null where keep-awake is off or has no end.
QJsonObject switchesAsJson(const SwitchCenter& switches);

} // namespace quillet
