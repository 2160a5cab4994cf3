#pragma once

#include <atomic>
#include <chrono>
#include <QString>
#include <thread>

namespace quillet {

/// Measures from outside how long Quillet's event loop is not to be had: asks it for its status
/// over the session bus again and again, from a thread of its own, and keeps the longest time
/// that an answer took. Time in which other programs had the processor does not count.
class StallProbe {
public:
    explicit StallProbe(const QString& busAddress);
    ~StallProbe();

    /// Ends the measurement.
    std::chrono::milliseconds longest();

    int answers() const { return m_answers; }

private:
    void ask(const QString& busAddress);

    std::atomic<bool> m_measuring = true;
    std::atomic<int> m_answers = 0;
    std::atomic<std::chrono::microseconds> m_longest{};
    std::thread m_thread;
};

} // namespace quillet
