#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace quillet {

/// Keyboard shortcuts that work whichever program has the keyboard.
class HotKeyService {
public:
    /// A shortcut in force. Destroying it withdraws it.
    class Registration {
    public:
        virtual ~Registration() = default;

        /// False while the keyboard layout puts it where another program has the combination, or
        /// has no such key.
        virtual bool isInForce() const = 0;
    };

    virtual ~HotKeyService() = default;

    /// Registers a virtual key code with a modifier mask (command 0x100, shift 0x200, option 0x800,
    /// control 0x1000). Null when another program has the combination or the keyboard has no such
    /// key. It moves with its key when the keyboard layout changes.
    [[nodiscard]] virtual std::unique_ptr<Registration> add(uint32_t keyCode, uint32_t modifiers,
                                                            uint32_t id) = 0;

    /// What a key types without modifiers in the layout that shortcuts go by: the first Latin one,
    /// else an American keyboard. 0 for keys without a character. `scanCode` is the one that key
    /// events of the toolkit carry.
    virtual char32_t symbol(uint32_t scanCode) const = 0;

    /// Called from the event loop with a registration's id at the first press of its key, not at
    /// its repeats.
    std::function<void(uint32_t id)> onPressed;

    /// Called from the event loop when the keyboard layout may have changed: what was refused may
    /// be free now, and registrations may no longer be in force.
    std::function<void()> onKeyboardChanged;
};

} // namespace quillet
