#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace quillet {

/// What a virtual key code means on an X keyboard.
struct KeyMeaning {
    uint16_t keyCode;       ///< virtual key code
    xcb_keysym_t keysym;    ///< what it types without modifiers on an American keyboard
    xcb_keycode_t position; ///< where it is there, for keyboards that lack the symbol
};

/// The meaning of a virtual key code; none for one that no keyboard here has.
std::optional<KeyMeaning> keyMeaning(uint32_t keyCode);

/// The meaning of a key on an American keyboard.
std::optional<KeyMeaning> keyMeaningAt(uint32_t position);

} // namespace quillet
