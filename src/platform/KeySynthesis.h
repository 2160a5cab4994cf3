#pragma once

#include <cstdint>
#include <vector>

namespace quillet {

/// One synthesized key event.
struct KeyEvent {
    uint16_t keyCode; ///< virtual key code
    bool isDown;
    uint64_t flags; ///< modifier flags; command is 1 << 20
    bool operator==(const KeyEvent&) const = default;
};

/// Key events that look like the keyboard's to every program.
class KeySynthesis {
public:
    virtual ~KeySynthesis() = default;

    /// Posts events to the active application, in order and in one go, once the keyboard is free
    /// of our own grabs. Modifiers that the user holds meanwhile do not reach the application with
    /// them and are as before afterwards. Nothing happens where keys cannot be synthesized.
    virtual void post(const std::vector<KeyEvent>& events) = 0;
};

} // namespace quillet
