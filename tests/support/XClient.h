#pragma once

#include <chrono>
#include <cstdlib>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <QByteArray>
#include <QHash>
#include <vector>
#include <xcb/xcb.h>

namespace quillet {

/// A connection to the X server with one unmapped window: what the fake clients of the desktop
/// tests stand on. Owns the connection; all that it made in the server ends with it. Used from
/// one thread at a time.
class XClient {
public:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    using Event = std::unique_ptr<xcb_generic_event_t, Free>;
    struct Property {
        xcb_atom_t type = XCB_ATOM_NONE;
        QByteArray bytes;
    };

    explicit XClient(const QByteArray& display);
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    bool connected() const { return xcb_connection_has_error(m_connection) == 0; }
    xcb_connection_t* connection() const { return m_connection; }
    xcb_window_t window() const { return m_window; }
    xcb_window_t root() const;

    xcb_atom_t atom(const QByteArray& name);
    QByteArray atomName(xcb_atom_t atom);
    QByteArray atomList(const std::vector<QByteArray>& names);
    std::vector<QByteArray> atomNames(const QByteArray& list);

    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                     const QByteArray& bytes, uint8_t format = 8);
    Property property(xcb_window_t window, xcb_atom_t property, bool takeAway = false);
    xcb_window_t selectionOwner(xcb_atom_t selection);
    xcb_timestamp_t serverTime();

    /// The first event that `wanted` accepts; the others stay in line. None when `deadline`
    /// passes, the server hangs up, or `wakeFd` becomes readable.
    Event wait(const std::function<bool(const xcb_generic_event_t&)>& wanted,
               std::chrono::milliseconds deadline, int wakeFd = -1);

private:
    xcb_connection_t* m_connection;
    xcb_window_t m_window = XCB_WINDOW_NONE;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    std::deque<Event> m_waiting;
};

/// The kind of an event, whoever sent it.
inline uint8_t eventType(const xcb_generic_event_t& event) {
    return event.response_type & 0x7f;
}

template<typename Wanted>
const Wanted& eventAs(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Wanted&>(event);
}

} // namespace quillet
