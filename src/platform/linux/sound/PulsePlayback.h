#pragma once

#include <atomic>
#include <QtGlobal>
#include <span>
#include <thread>

namespace quillet {

/// One sound on its way to the sound server, by a thread and a connection of its own that both end
/// with the sound. Destroying it silences the sound; that takes no longer than waking the thread.
/// Without a server the playback is simply over.
class PulsePlayback {
public:
    /// `samples` must outlive the playback. `volume` is linear, 0 … 1.
    PulsePlayback(std::span<const qint16> samples, double volume);

    bool isRunning() const { return m_running; }

private:
    void run(std::stop_token stop, std::span<const qint16> samples, double volume);

    std::atomic<bool> m_running = true;
    std::jthread m_thread; // last: it uses the other members
};

} // namespace quillet
