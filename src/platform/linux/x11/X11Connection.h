#pragma once

#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <vector>
#include <xcb/xcb.h>

namespace quillet {

/// Frees what xcb hands out: replies, errors, events.
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};
template<typename T>
using XcbOwned = std::unique_ptr<T, XcbFree>;

/// Our own connection to the X server, apart from the toolkit's, so that errors, grabs and
/// selections stay among ourselves and vanish when it closes.
///
/// Events, changes of the root's properties among them, reach every listener in the order of the
/// server. A turn of the event loop handles a few milliseconds of them at most, so a flood never
/// holds the loop up.
class X11Connection : public QObject {
public:
    using Listener = std::function<void(const xcb_generic_event_t&)>;

    /// Ends the listening when destroyed.
    using Listening = std::shared_ptr<void>;

    /// Connects to the display of the environment; null where there is none or where it lacks
    /// XFixes 2 or later.
    static std::unique_ptr<X11Connection> open();

    /// The toolkit's own connection; null where somebody chose another backend for the toolkit.
    static xcb_connection_t* toolkit();

    /// Whether the environment names a display that answers. Needs no application object.
    static bool displayAnswers();

    ~X11Connection() override;

    xcb_connection_t* xcb() const { return m_xcb; }
    xcb_window_t root() const { return m_screen->root; }
    int screenNumber() const { return m_screenNumber; }

    /// Whether this connection made a window.
    bool owns(xcb_window_t window) const;

    /// Whether this program made a window, through this connection or the toolkit's.
    bool isOurs(xcb_window_t window) const;

    /// The process that made a window; 0 where neither the server nor the window tells.
    qint64 pidOf(xcb_window_t window) const;

    /// The id of a name, asked from the server once.
    xcb_atom_t atom(const QByteArray& name) const;

    /// The names of several ids, in one round trip for those not yet known.
    QList<QByteArray> atomNames(const std::vector<xcb_atom_t>& atoms) const;

    /// The first XFixes event code.
    uint8_t xfixesEvent() const { return m_xfixesEvent; }

    /// A small window that is never mapped, for selections and their properties.
    xcb_window_t createHiddenWindow(uint32_t eventMask) const;

    /// Whole 32-bit values of a property, at most `most` of them; empty where it is missing.
    std::vector<uint32_t> values(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                                 uint32_t most = 1024) const;

    /// A property as bytes, at most 64 KiB; empty where it is missing.
    QByteArray bytes(xcb_window_t window, xcb_atom_t property) const;

    /// Asks the window manager to do something to another program's window, as a pager does.
    void askWindowManager(xcb_window_t window, xcb_atom_t request,
                          const std::array<uint32_t, 5>& data) const;

    /// Whether the window manager says that it knows a property or a request.
    bool windowManagerKnows(xcb_atom_t hint) const;

    /// Tells a requestor under which property its conversion is, or None for a refusal.
    void answerRequest(const xcb_selection_request_event_t& request, xcb_atom_t property) const;

    [[nodiscard]] Listening listen(Listener listener);

    void flush() const { xcb_flush(m_xcb); }

private:
    X11Connection(xcb_connection_t* xcb, int screenNumber, xcb_screen_t* screen,
                  uint8_t xfixesEvent);
    void drain();
    void continueNextTurn();
    void dispatch(const xcb_generic_event_t& event);

    xcb_connection_t* m_xcb;
    int m_screenNumber;
    xcb_screen_t* m_screen;
    uint8_t m_xfixesEvent;
    QSocketNotifier m_notifier;
    bool m_draining = false;
    bool m_turnPending = false;
    std::vector<std::weak_ptr<Listener>> m_listeners;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
    mutable QHash<xcb_atom_t, QByteArray> m_names;
};

} // namespace quillet
