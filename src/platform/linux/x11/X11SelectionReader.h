#pragma once

#include "platform/linux/x11/X11Connection.h"
#include "platform/Pasteboard.h"
#include "platform/Scheduler.h"

#include <list>

namespace quillet {

/// What a selection's owner delivered for one target.
struct X11Delivery {
    PasteboardReading::Outcome outcome = PasteboardReading::Outcome::absent;
    xcb_atom_t type = XCB_ATOM_NONE;
    uint8_t format = 0; ///< bits per unit: 8, 16 or 32; 32-bit units are 4 bytes here
    QByteArray bytes;
};

/// Fetches selections from their owners, whole or in increments (ICCCM 2.4 and 2.7.2), several at
/// a time, without ever waiting for one.
///
/// One window receives everything and lives as long as this object: an owner whose requestor
/// vanishes in the middle may die of it. So a transfer nobody wants any more is not broken off but
/// read to its end and thrown away, and each transfer under way has a property of its own.
class X11SelectionReader {
public:
    using Completion = std::function<void(X11Delivery)>;

    struct Request {
        xcb_atom_t selection;
        xcb_atom_t target;
        xcb_timestamp_t time; ///< when the owner took the selection, or CurrentTime
        qint64 maxBytes;
        Scheduler::Duration deadline; ///< for the whole transfer
    };

    X11SelectionReader(X11Connection& connection, Scheduler& scheduler);

    /// `completion` runs once, from the event loop, unless the reading is cancelled before.
    void read(const Request& request, Completion completion);

    /// Ends all readings of a selection with an outcome. Where the owner is gone, nothing more
    /// will come from it.
    enum class Owner { stillThere, gone };
    void endAll(xcb_atom_t selection, PasteboardReading::Outcome outcome, Owner owner);

private:
    enum class State {
        asked,     ///< no answer yet
        slicing,   ///< the whole is there and is being taken
        receiving, ///< increments are coming
        refused    ///< an announced transfer that we never let begin
    };

    struct Transfer {
        Request request;
        xcb_atom_t property;
        State state = State::asked;
        Completion completion; ///< null once nobody waits for the outcome
        X11Delivery delivery;
        uint32_t taken = 0; ///< bytes of the property that stands at the moment
        std::unique_ptr<Timer> nextSlice;
        std::unique_ptr<Timer> deadline;
    };
    using Transfers = std::list<Transfer>;

    void handle(const xcb_generic_event_t& event);
    void handleNotify(const xcb_selection_notify_event_t& event);
    void handleProperty(const xcb_property_notify_event_t& event);
    void takeWhole(Transfers::iterator transfer, uint32_t size);
    void startIncrements(Transfers::iterator transfer);
    void takeIncrement(Transfers::iterator transfer, uint32_t size);
    void takeSlice(Transfers::iterator transfer);
    void endSlices(Transfers::iterator transfer, PasteboardReading::Outcome outcome);
    void finish(Transfer& transfer, PasteboardReading::Outcome outcome);
    void close(Transfers::iterator transfer);
    xcb_atom_t freeProperty();

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    xcb_window_t m_window;
    xcb_atom_t m_incr;
    Transfers m_transfers;
    std::vector<xcb_atom_t> m_freeProperties;
    int m_propertyCount = 0;
    X11Connection::Listening m_listening;
};

} // namespace quillet
