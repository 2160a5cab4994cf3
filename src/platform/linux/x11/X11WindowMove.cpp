#include "platform/linux/x11/X11WindowMove.h"

#include <algorithm>

namespace quillet {
namespace {

constexpr Scheduler::Duration leavingDeadline{300};
constexpr Scheduler::Duration answerDeadline{400}; // a window manager that refuses may say nothing
constexpr Scheduler::Duration quiet{50};           // after the last word of an answer
constexpr Scheduler::Duration lateMargins{300};

constexpr uint32_t byTheUser = 2; // the source of a request, as pagers give it
constexpr uint32_t removeState = 0;
constexpr uint32_t outerCorner = 1; // the gravity that counts from the corner of the decoration
constexpr uint32_t allFour = 0xf;   // x, y, width and height are given

} // namespace

X11WindowMove::X11WindowMove(X11Connection& connection, Scheduler& scheduler, xcb_window_t window,
                             const PixelRect& visible, Report settled, Report ended)
    : m_connection(connection),
      m_scheduler(scheduler),
      m_window(window),
      m_wanted(visible),
      m_settled(std::move(settled)),
      m_ended(std::move(ended)),
      m_listening(connection.listen([this](const xcb_generic_event_t& event) { handle(event); })) {
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection.xcb(), xcb_get_window_attributes(connection.xcb(), window), nullptr));
    m_eventsBefore = attributes ? attributes->your_event_mask : 0;
    const uint32_t events =
        m_eventsBefore | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.xcb(), window, XCB_CW_EVENT_MASK, &events);
    m_deadline = leaveFillingStates()
                     ? m_scheduler.after(leavingDeadline, [this] { ask(); })
                     : m_scheduler.after(Scheduler::Duration(0), [this] { ask(); });
}

X11WindowMove::~X11WindowMove() {
    xcb_change_window_attributes(m_connection.xcb(), m_window, XCB_CW_EVENT_MASK, &m_eventsBefore);
    m_connection.flush();
}

/// Whether there was a state to leave.
bool X11WindowMove::leaveFillingStates() {
    if (!isFilling())
        return false;
    const xcb_atom_t state = m_connection.atom("_NET_WM_STATE");
    m_connection.askWindowManager(
        m_window, state,
        {removeState, m_connection.atom("_NET_WM_STATE_FULLSCREEN"), 0, byTheUser});
    m_connection.askWindowManager(m_window, state,
                                  {removeState, m_connection.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
                                   m_connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ"), byTheUser});
    return true;
}

bool X11WindowMove::isFilling() const {
    const auto states =
        m_connection.values(m_window, m_connection.atom("_NET_WM_STATE"), XCB_ATOM_ATOM);
    return std::any_of(states.begin(), states.end(), [this](xcb_atom_t state) {
        return state == m_connection.atom("_NET_WM_STATE_MAXIMIZED_VERT") ||
               state == m_connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ") ||
               state == m_connection.atom("_NET_WM_STATE_FULLSCREEN");
    });
}

void X11WindowMove::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window != m_window)
            return;
        if (m_phase == Phase::leaving) {
            if (property.atom == m_connection.atom("_NET_WM_STATE") && !isFilling())
                ask();
        } else if (property.atom == m_connection.atom("_NET_FRAME_EXTENTS") ||
                   property.atom == m_connection.atom("_GTK_FRAME_EXTENTS")) {
            lookAtAnswer();
        }
        return;
    }
    case XCB_CONFIGURE_NOTIFY:
        if (reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == m_window &&
            m_phase == Phase::asked)
            lookAtAnswer();
        return;
    case XCB_DESTROY_NOTIFY:
        if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == m_window)
            settle();
        return;
    }
}

void X11WindowMove::ask() {
    const auto frame = X11WindowFrame::read(m_connection, m_window);
    if (!frame || frame->visible() == m_wanted || m_asksLeft == 0)
        return settle();
    --m_asksLeft;
    m_atAsking = *frame;
    if (m_phase == Phase::leaving)
        m_phase = Phase::asked;
    const PixelRect request = frame->requestFor(m_wanted);
    const std::array<uint32_t, 4> place{
        static_cast<uint32_t>(request.x), static_cast<uint32_t>(request.y),
        static_cast<uint32_t>(request.width), static_cast<uint32_t>(request.height)};
    const xcb_atom_t moveResize = m_connection.atom("_NET_MOVERESIZE_WINDOW");
    if (m_connection.windowManagerKnows(moveResize)) {
        m_connection.askWindowManager(
            m_window, moveResize,
            {outerCorner | allFour << 8 | byTheUser << 12, place[0], place[1], place[2], place[3]});
    } else {
        xcb_configure_window(m_connection.xcb(), m_window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             place.data());
        m_connection.flush();
    }
    if (m_phase == Phase::asked)
        m_deadline = m_scheduler.after(answerDeadline, [this] { settle(); });
}

void X11WindowMove::lookAtAnswer() {
    const auto frame = X11WindowFrame::read(m_connection, m_window);
    if (!frame)
        return settle();
    if (!frame->hasSameMargins(m_atAsking))
        return ask();
    if (m_phase == Phase::watching)
        return;
    if (frame->visible() == m_wanted)
        return settle();
    m_deadline = m_scheduler.after(quiet, [this] { settle(); });
}

void X11WindowMove::settle() {
    if (m_phase == Phase::watching)
        return;
    m_phase = Phase::watching;
    m_deadline = m_scheduler.after(lateMargins, m_ended);
    const Report settled = m_settled; // it may destroy this move
    settled();
}

} // namespace quillet
