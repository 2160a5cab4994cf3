#pragma once

#include <memory>

namespace quillet {

/// Takes the keyboard away from every program.
class KeyboardGrab {
public:
    /// The keyboard in our hand: no key, modifier or media key does anything, while the pointer
    /// works as ever. Destroying it gives the keyboard back with its locks as they were: at once,
    /// or when the keys that are down have come up, so that no program gets half of a key press.
    class Hold {
    public:
        virtual ~Hold() = default;
    };

    virtual ~KeyboardGrab() = default;

    /// Null, and nothing has happened, where another program has the keyboard, where a hold exists
    /// already, and where a keyboard cannot be held at all. A panel that has the keyboard resigns
    /// it. The hold ends with this process, however that ends.
    [[nodiscard]] virtual std::unique_ptr<Hold> hold() = 0;
};

} // namespace quillet
