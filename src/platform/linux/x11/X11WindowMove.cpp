#include "platform/linux/x11/X11WindowMove.h"

#include <utility>

namespace quillet {
namespace {

constexpr Scheduler::Duration stateDeadline{300};
constexpr Scheduler::Duration answerDeadline{400}; // a window manager that refuses may say nothing
constexpr Scheduler::Duration quiet{50};           // after the last word of an answer
constexpr Scheduler::Duration lateChanges{300};
constexpr Scheduler::Duration lateChangesAfterFill{1000}; // a shadow may take long to return

constexpr uint32_t byTheUser = 2; // the source of a request, as pagers give it
constexpr uint32_t removeState = 0;
constexpr uint32_t addState = 1;
constexpr uint32_t outerCorner = 1; // the gravity that counts from the corner of the decoration
constexpr uint32_t allFour = 0xf;   // x, y, width and height are given

} // namespace

X11WindowMove::X11WindowMove(X11Connection& connection, Scheduler& scheduler, xcb_window_t window,
                             const PixelRect& visible, const WindowFill& fill, Report settled,
                             Report ended)
    : m_connection(connection),
      m_scheduler(scheduler),
      m_window(window),
      m_wanted(visible),
      m_fill(fill),
      m_settled(std::move(settled)),
      m_ended(std::move(ended)),
      m_listening(connection.listen([this](const xcb_generic_event_t& event) { handle(event); })) {
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection.xcb(), xcb_get_window_attributes(connection.xcb(), window), nullptr));
    m_eventsBefore = attributes ? attributes->your_event_mask : 0;
    const uint32_t events =
        m_eventsBefore | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection.xcb(), window, XCB_CW_EVENT_MASK, &events);
    m_leavesFill = fillOf(connection, window).isAny();
    if (m_leavesFill)
        changeFill(removeState, {true, true, true});
    m_deadline =
        m_scheduler.after(m_leavesFill ? stateDeadline : Scheduler::Duration(0), [this] { ask(); });
}

X11WindowMove::~X11WindowMove() {
    xcb_change_window_attributes(m_connection.xcb(), m_window, XCB_CW_EVENT_MASK, &m_eventsBefore);
    m_connection.flush();
}

/// Both axes in one request, so that the window takes one step.
void X11WindowMove::changeFill(uint32_t change, const WindowFill& states) {
    const xcb_atom_t state = m_connection.atom("_NET_WM_STATE");
    const xcb_atom_t vertical = m_connection.atom("_NET_WM_STATE_MAXIMIZED_VERT");
    const xcb_atom_t horizontal = m_connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ");
    if (states.fullScreen)
        m_connection.askWindowManager(
            m_window, state, {change, m_connection.atom("_NET_WM_STATE_FULLSCREEN"), 0, byTheUser});
    if (states.vertically)
        m_connection.askWindowManager(
            m_window, state, {change, vertical, states.horizontally ? horizontal : 0, byTheUser});
    else if (states.horizontally)
        m_connection.askWindowManager(m_window, state, {change, horizontal, 0, byTheUser});
}

void X11WindowMove::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window != m_window)
            return;
        if (property.atom == m_connection.atom("_NET_WM_STATE")) {
            if (m_phase == Phase::leaving && !fillOf(m_connection, m_window).isAny())
                ask();
            else if (m_phase == Phase::filling && fillOf(m_connection, m_window) == m_fill)
                settle();
        } else if (property.atom == m_connection.atom("_NET_FRAME_EXTENTS") ||
                   property.atom == m_connection.atom("_GTK_FRAME_EXTENTS")) {
            lookAtAnswer();
        }
        return;
    }
    case XCB_CONFIGURE_NOTIFY:
        if (reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == m_window)
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
    if (!frame)
        return settle();
    m_atAsking = *frame;
    if (frame->visible() == m_wanted || m_asksLeft == 0)
        return arrive();
    --m_asksLeft;
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
        m_deadline = m_scheduler.after(answerDeadline, [this] { arrive(); });
}

void X11WindowMove::lookAtAnswer() {
    const bool isUnderWay = m_phase == Phase::asked;
    if (!isUnderWay && (m_phase != Phase::watching || m_fill.isAny()))
        return;
    const auto frame = X11WindowFrame::read(m_connection, m_window);
    if (!frame)
        return settle();
    if (!frame->hasSameMargins(m_atAsking))
        return ask();
    if (!isUnderWay)
        m_late = m_scheduler.after(quiet, [this] { settleAgain(); });
    else if (frame->visible() == m_wanted)
        arrive();
    else
        m_deadline = m_scheduler.after(quiet, [this] { arrive(); });
}

/// In its place, or where it was left; the window manager makes the rest of it.
void X11WindowMove::arrive() {
    if (m_phase == Phase::watching)
        return;
    if (!m_fill.isAny())
        return settle();
    m_phase = Phase::filling;
    changeFill(addState, m_fill);
    m_deadline = m_scheduler.after(stateDeadline, [this] { settle(); });
}

void X11WindowMove::settle() {
    if (m_phase == Phase::watching)
        return;
    m_phase = Phase::watching;
    m_deadline = m_scheduler.after(m_leavesFill ? lateChangesAfterFill : lateChanges, m_ended);
    m_atSettling = X11WindowFrame::read(m_connection, m_window);
    const Report settled = m_settled; // it may destroy this move
    settled();
}

void X11WindowMove::settleAgain() {
    const auto frame = X11WindowFrame::read(m_connection, m_window);
    if (!frame || !m_atSettling || frame->visible() == m_atSettling->visible())
        return;
    m_atSettling.reset(); // once is enough
    const Report settled = m_settled;
    settled();
}

} // namespace quillet
