#pragma once

#include "platform/KeySynthesis.h"

namespace quillet {

/// Remembers what the active application would have got.
class MemoryKeySynthesis : public KeySynthesis {
public:
    void post(const std::vector<KeyEvent>& events) override {
        posted.insert(posted.end(), events.begin(), events.end());
    }

    std::vector<KeyEvent> posted;
};

} // namespace quillet
