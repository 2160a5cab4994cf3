#pragma once

#include "app/CommandLine.h"
#include "app/VerbResult.h"

#include <functional>
#include <QJsonObject>

namespace quillet {

class SwitchCenter;

/// Carries out a verb that turns a switch of the system.
VerbResult runSwitchVerb(const Command& command, SwitchCenter& switches);

/// Carries out the verb for the dark appearance, which is known only when the desktop has obeyed.
void runDarkVerb(const Command& command, SwitchCenter& switches,
                 const std::function<void(VerbResult)>& reply);

/// Carries out the verb for the keyboard, which another program may have for a moment.
void runKeyboardLockVerb(SwitchCenter& switches, const std::function<void(VerbResult)>& reply);

/// How the switches stand. `awakeUntil` is null where keep-awake is off or has no end.
QJsonObject switchesAsJson(const SwitchCenter& switches);

} // namespace quillet
