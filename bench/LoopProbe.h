#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace quillet {

/// What the probe, preloaded into a program, has seen of its main thread; in a file that the
/// program and whoever measures it both have in memory.
struct LoopRecord {
    /// Names that file to the probe.
    static constexpr auto variable = "QUILLET_LOOP_RECORD";

    /// A turn of the event loop: from when it wakes up until it has nothing left to do.
    /// Milliseconds.
    struct Turn {
        float processor; ///< at work
        float held;      ///< at work, or waiting for anything but a processor or the X server
        float whole;
    };

    /// Replies of the X server that had not come yet when they were needed.
    std::atomic<uint32_t> ownWaits;     ///< of the program
    std::atomic<uint32_t> libraryWaits; ///< of its libraries, the toolkit above all
    std::atomic<uint32_t> turns;
    std::array<Turn, 1 << 16> turn; ///< the last so many; number n is at n modulo the size
};

} // namespace quillet
