#pragma once

#include "clipboard/ClipboardKeeper.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/ClipContainer.h"
#include "platform/Platform.h"
#include "settings/Sounds.h"

#include <memory>

namespace quillet {

/// Every long-lived service. Members are created from top to bottom and destroyed from bottom to
/// top, so each may use those above it for as long as it lives.
struct Composition {
    Platform platform;
    std::unique_ptr<Sounds> sounds;
    std::unique_ptr<ClipContainer> container;
    std::unique_ptr<ClipboardStore> clipboard;
    std::unique_ptr<ClipboardKeeper> keeper;
};

} // namespace quillet
