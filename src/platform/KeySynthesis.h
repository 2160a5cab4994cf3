#pragma once

#include <cstdint>
#include <functional>
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
    using Completion = std::function<void(bool posted)>;

    virtual ~KeySynthesis() = default;

    /// Posts events to the application that was active before a panel of ours took the keyboard, in
    /// order and in one go. Waits for half a second at most until that application has the keyboard
    /// again and the user holds no modifier. Modifiers held for longer do not reach the application
    /// with the events and are as before afterwards; an application that does not have the keyboard
    /// by then gets nothing, and neither does another. `completion` runs exactly once, inside the
    /// call or later, unless this dies first; its argument is false where nothing was posted, as
    /// where keys cannot be synthesized.
    virtual void post(const std::vector<KeyEvent>& events, Completion completion) = 0;
};

} // namespace quillet
