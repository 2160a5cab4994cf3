#pragma once

#include "platform/KeySynthesis.h"

namespace quillet {

/// Remembers what the active application would have got.
class MemoryKeySynthesis : public KeySynthesis {
public:
    void post(const std::vector<KeyEvent>& events, Completion completion) override {
        if (reachesApplication)
            posted.insert(posted.end(), events.begin(), events.end());
        completion(reachesApplication);
    }

    std::vector<KeyEvent> posted;
    bool reachesApplication = true; ///< false: the application does not get the keyboard back
};

} // namespace quillet
