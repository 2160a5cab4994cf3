#pragma once

#include <chrono>
#include <thread>

namespace quillet {

/// Polls `condition` until it holds; false when it did not within `deadline`.
template<typename Condition>
bool eventually(Condition&& condition,
                std::chrono::milliseconds deadline = std::chrono::seconds(5)) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace quillet
