#pragma once

#include "platform/KeyboardGrab.h"

#include <utility>

namespace quillet {

/// A keyboard that this program or another one holds, or nobody. Outlives its holds.
class MemoryKeyboardGrab : public KeyboardGrab {
public:
    std::unique_ptr<Hold> hold() override {
        if (isTakenElsewhere || std::exchange(m_isHeld, true))
            return nullptr;
        return std::make_unique<MemoryHold>(m_isHeld);
    }

    /// Whether keys do nothing.
    bool isHeld() const { return m_isHeld; }

    bool isTakenElsewhere = false;

private:
    class MemoryHold : public Hold {
    public:
        explicit MemoryHold(bool& isHeld) : m_isHeld(isHeld) {}
        ~MemoryHold() override { m_isHeld = false; }

    private:
        bool& m_isHeld;
    };

    bool m_isHeld = false;
};

} // namespace quillet
