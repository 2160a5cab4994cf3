#pragma once

#include "platform/Access.h"
#include "platform/KeySynthesis.h"

namespace quillet::Paster {

/// Presses Command-V in the application that the user is working in; `completion` is told whether
/// it was. Nothing happens without the permission.
void pasteIntoFrontApp(const Access& access, KeySynthesis& keys,
                       KeySynthesis::Completion completion);

} // namespace quillet::Paster
