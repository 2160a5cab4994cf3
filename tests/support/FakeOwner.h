#pragma once

#include "support/XClient.h"

#include <atomic>
#include <climits>
#include <functional>
#include <future>
#include <map>
#include <mutex>
#include <thread>

namespace quillet {

/// One target that a FakeOwner offers, and how badly it behaves when asked for it.
struct Offer {
    enum class Manner { whole, incremental, refused, ignored };
    enum class Ending { proper, stalls, dies };

    QByteArray target{};
    QByteArray bytes{};
    Manner manner = Manner::whole;
    std::optional<uint32_t> announced = std::nullopt; ///< the size an incremental transfer claims
    qint64 repeat = 1;         ///< `bytes` are delivered this many times over
    qsizetype chunk = 65536;   ///< of an incremental transfer
    qint64 chunks = LLONG_MAX; ///< delivered before `ending` takes place
    Ending ending = Ending::proper;
    std::chrono::milliseconds pause{0}; ///< before the answer and before every chunk
};

/// A program that owns the clipboard, scripted and counted. It lives on a thread and an X
/// connection of its own, so that it neither answers sooner nor later than a program would.
class FakeOwner {
public:
    explicit FakeOwner(const QByteArray& display);
    ~FakeOwner();

    /// Takes the clipboard as of now or of an earlier time. Returns when the server has decided:
    /// it refuses a time before that of the last owner.
    void own(std::vector<Offer> offers, xcb_timestamp_t since = XCB_CURRENT_TIME);
    xcb_timestamp_t now();

    /// How often `target` was asked for. Without an argument: anything but the list of targets.
    int requests(const QByteArray& target) const;
    int payloadRequests() const;

    bool ownsClipboard();

    /// Asks the clipboard manager to keep the content, as a program does that is about to quit;
    /// an empty list leaves the choice to the manager. True when it reports that it has done so.
    bool handOver(const std::vector<QByteArray>& targets);

    /// Closes the connection in the middle of whatever goes on.
    void die();

private:
    struct Transfer {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t type;
        Offer offer;
        qint64 sent = 0;
        qint64 chunksSent = 0;
    };

    void serve(const QByteArray& display, std::promise<bool>& connected);
    void perform(std::function<void()> command);
    void takeClipboard(xcb_timestamp_t since);
    void handle(const xcb_generic_event_t& event);
    void answer(const xcb_selection_request_event_t& request);
    bool deliver(const Offer& offer, const xcb_selection_request_event_t& request,
                 xcb_atom_t property);
    void sendChunk(Transfer& transfer);

    std::thread m_thread;
    int m_wakeUp;
    std::atomic<bool> m_alive = true;
    mutable std::mutex m_mutex;
    std::vector<std::function<void()>> m_commands;
    std::map<QByteArray, int> m_requests;

    // Touched by the thread only.
    XClient* m_client = nullptr;
    std::vector<Offer> m_offers;
    std::vector<Transfer> m_transfers;
    xcb_timestamp_t m_ownedSince = XCB_CURRENT_TIME;
    std::promise<bool>* m_handOver = nullptr;
};

} // namespace quillet
