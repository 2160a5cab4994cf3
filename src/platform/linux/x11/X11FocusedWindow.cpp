#include "platform/linux/x11/X11FocusedWindow.h"

#include <utility>

namespace quillet {
namespace {

/// Between desktop points and points from the top left of the primary screen; both ways.
Rect flipped(const Rect& rect, const ScreenGeometry& geometry) {
    const auto screens = geometry.screens();
    return screens.empty() ? rect : flipped(rect, screens.front().frame.size.height);
}

/// The server gives a window's number to another program's window when its program has ended, so
/// the process belongs to the identity.
FocusedWindow::Identity identityOf(const X11Connection& connection, xcb_window_t window) {
    return static_cast<FocusedWindow::Identity>(connection.pidOf(window)) << 32 | window;
}

xcb_window_t windowOf(FocusedWindow::Identity identity) {
    return static_cast<xcb_window_t>(identity);
}

} // namespace

X11FocusedWindow::X11FocusedWindow(X11Connection& connection, const X11Screens& screens,
                                   Scheduler& scheduler)
    : m_connection(connection), m_screens(screens), m_scheduler(scheduler) {}

std::optional<FocusedWindow::Identity> X11FocusedWindow::identity() const {
    const auto active = m_connection.values(
        m_connection.root(), m_connection.atom("_NET_ACTIVE_WINDOW"), XCB_ATOM_WINDOW, 1);
    if (active.empty() || active.front() == XCB_WINDOW_NONE ||
        m_connection.isOurs(active.front()) || !isOrdinary(active.front()))
        return std::nullopt;
    return identityOf(m_connection, active.front());
}

std::optional<Rect> X11FocusedWindow::topLeftFrame(Identity window) const {
    const auto frame = X11WindowFrame::read(m_connection, windowOf(window));
    if (!frame)
        return std::nullopt;
    const ScreenGeometry geometry = m_screens.geometry();
    return flipped(geometry.rectOf(frame->visible()), geometry);
}

WindowFill X11FocusedWindow::fill(Identity window) const {
    return fillOf(m_connection, windowOf(window));
}

void X11FocusedWindow::setSize(Identity window, const Size& size) {
    wishes(window).size = size;
}

void X11FocusedWindow::setTopLeft(Identity window, const Point& corner) {
    wishes(window).corner = corner;
}

void X11FocusedWindow::setFill(Identity window, const WindowFill& fill) {
    wishes(window).fill = fill;
}

void X11FocusedWindow::whenSettled(Identity window, Settled settled) {
    wishes(window).settled = std::move(settled);
}

/// By the first of the window's types that the standard knows; a window without any is ordinary.
/// Window managers leave the name of a dead window standing.
bool X11FocusedWindow::isOrdinary(xcb_window_t window) const {
    const XcbOwned<xcb_get_window_attributes_reply_t> alive(xcb_get_window_attributes_reply(
        m_connection.xcb(), xcb_get_window_attributes(m_connection.xcb(), window), nullptr));
    if (!alive)
        return false;
    static const QByteArray prefix("_NET_WM_WINDOW_TYPE_");
    const auto types =
        m_connection.values(window, m_connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM);
    for (const QByteArray& type : m_connection.atomNames(types)) {
        if (type.startsWith(prefix))
            return type == prefix + "NORMAL" || type == prefix + "DIALOG";
    }
    return true;
}

/// The wishes about a window, which the next turn of the event loop will carry out.
X11FocusedWindow::Wishes& X11FocusedWindow::wishes(Identity window) {
    const xcb_window_t id = windowOf(window);
    Wishes& wishes = m_wishes[id];
    if (!wishes.turn)
        wishes.turn = m_scheduler.after(Scheduler::Duration(0), [this, id] { carryOut(id); });
    return wishes;
}

void X11FocusedWindow::carryOut(xcb_window_t window) {
    Wishes& wishes = m_wishes[window];
    wishes.turn.reset();
    const auto size = std::exchange(wishes.size, {});
    const auto corner = std::exchange(wishes.corner, {});
    const auto fill = std::exchange(wishes.fill, {});
    const auto frame = topLeftFrame(window);
    if (frame && (size || corner || fill)) {
        const ScreenGeometry geometry = m_screens.geometry();
        const Rect wanted{corner.value_or(frame->origin), size.value_or(frame->size)};
        wishes.move.reset(); // it stops listening before the next one begins to
        wishes.move = std::make_unique<X11WindowMove>(
            m_connection, m_scheduler, window, geometry.pixelsOf(flipped(wanted, geometry)),
            fill.value_or(WindowFill{}), [this, window] { report(window); },
            [this, window] { forget(window); });
    } else if (!frame || !wishes.move || wishes.move->hasSettled()) {
        report(window);
    }
}

void X11FocusedWindow::report(xcb_window_t window) {
    if (m_wishes[window].turn)
        return; // what was asked meanwhile gets an answer of its own
    Settled settled = std::exchange(m_wishes[window].settled, {});
    const auto frame = topLeftFrame(window);
    if (!frame || !m_wishes[window].move)
        forget(window);
    if (!settled)
        return;
    settled(frame);
    const auto known = m_wishes.find(window);
    if (known != m_wishes.end() && !known->second.settled)
        known->second.settled = std::move(settled);
}

/// Unless something new was asked meanwhile.
void X11FocusedWindow::forget(xcb_window_t window) {
    if (!m_wishes[window].turn)
        m_wishes.erase(window);
}

} // namespace quillet
