#pragma once

#include "platform/Access.h"
#include "platform/KeySynthesis.h"

namespace quillet::Paster {

/// Presses Command-V in the active application. Nothing happens without the permission.
void pasteIntoFrontApp(const Access& access, KeySynthesis& keys);

} // namespace quillet::Paster
