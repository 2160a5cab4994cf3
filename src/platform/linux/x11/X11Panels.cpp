#include "platform/linux/x11/X11Panels.h"

#include "platform/linux/x11/X11Panel.h"

#include <algorithm>
#include <xcb/xfixes.h>

namespace quillet {

X11Panels::X11Panels(X11Connection& connection, X11RawInput& rawInput, const X11Screens& screens,
                     Scheduler& scheduler)
    : m_connection(connection),
      m_rawInput(rawInput),
      m_screens(screens),
      m_scheduler(scheduler),
      m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW")),
      m_compositor(connection.atom("_NET_WM_CM_S" + QByteArray::number(connection.screenNumber()))),
      m_listening(connection.listen([this](const xcb_generic_event_t& event) { handle(event); })) {
    xcb_connection_t* xcb = connection.xcb();
    xcb_xfixes_select_selection_input(xcb, connection.root(), m_compositor,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    const XcbOwned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_compositor), nullptr));
    m_isTranslucent = owner && owner->owner != XCB_WINDOW_NONE;
}

void X11Panels::handle(const xcb_generic_event_t& event) {
    const uint8_t type = event.response_type & 0x7f;
    if (type == m_connection.xfixesEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (change.selection == m_compositor)
            m_isTranslucent = change.owner != XCB_WINDOW_NONE;
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.window == m_connection.root() && property.atom == m_activeWindow)
            activeWindowChanged();
    }
}

std::unique_ptr<Panel> X11Panels::make(QWidget& content, const PanelStyle& style) {
    auto panel = std::make_unique<X11Panel>(*this, content, style);
    m_panels.push_back(panel.get());
    return panel;
}

/// Puts a panel above those of its level and keeps higher ones above it.
void X11Panels::raise(X11Panel& panel) {
    std::erase(m_panels, &panel);
    const auto above = std::find_if(m_panels.begin(), m_panels.end(), [&](const X11Panel* other) {
        return other->level() > panel.level();
    });
    const auto first = m_panels.insert(above, &panel);
    std::for_each(first, m_panels.end(), [](X11Panel* raised) { raised->raiseWindow(); });
}

void X11Panels::becameKey(X11Panel& panel) {
    if (!m_key) {
        if (m_activeAtKeyAsked)
            xcb_discard_reply(m_connection.xcb(), m_activeAtKeyAsked->sequence);
        m_activeAtKeyAsked = askForActiveWindow();
        m_connection.flush();
    } else if (m_key != &panel) {
        m_key->resignKey();
    }
    m_key = &panel;
    if (!m_clicks) {
        m_clicks = m_rawInput.watch(X11RawInput::Kind::buttonPress,
                                    [this](uint32_t button, auto) { buttonPressed(button); });
    }
}

void X11Panels::gaveUpKey(const X11Panel& panel) {
    if (m_key != &panel)
        return;
    m_key = nullptr;
    m_clicks.reset();
}

bool X11Panels::isTakingKeyboard() const {
    return m_key && m_key->isTakingKeyboard();
}

void X11Panels::removed(X11Panel& panel) {
    std::erase(m_panels, &panel);
}

void X11Panels::buttonPressed(uint32_t button) {
    const bool isScrolling = button >= 4 && button <= 7;
    if (m_key && !isScrolling && !isPointerOnOurs())
        m_key->resignKey();
}

/// Whether the window under the pointer is a panel or a menu of ours. Our ordinary windows are not
/// found so: they lie in frames of the window manager.
bool X11Panels::isPointerOnOurs() const {
    const XcbOwned<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(
        m_connection.xcb(), xcb_query_pointer(m_connection.xcb(), m_connection.root()), nullptr));
    xcb_connection_t* toolkit = X11Connection::toolkit();
    if (!pointer || !toolkit)
        return false;
    const xcb_setup_t* setup = xcb_get_setup(toolkit);
    return pointer->child != XCB_WINDOW_NONE &&
           (pointer->child & ~setup->resource_id_mask) == setup->resource_id_base;
}

bool X11Panels::isKeyboardBack() const {
    if (m_key)
        return false;
    const auto active = activeWindow(askForActiveWindow());
    if (!active)
        return true;
    // A window that closed under a panel may stay on record as the active one.
    return (!activeAtKey() || active == activeAtKey()) && isViewable(*active);
}

bool X11Panels::isViewable(xcb_window_t window) const {
    const XcbOwned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        m_connection.xcb(), xcb_get_window_attributes(m_connection.xcb(), window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

void X11Panels::askForKeyboardBack() const {
    const auto before = activeAtKey();
    if (!m_key && before && !isKeyboardBack())
        m_connection.askWindowManager(*before, m_activeWindow, {2}); // the user asks for it
}

void X11Panels::resignKey() {
    if (m_key)
        m_key->resignKey();
}

xcb_get_property_cookie_t X11Panels::askForActiveWindow() const {
    return xcb_get_property(m_connection.xcb(), 0, m_connection.root(), m_activeWindow,
                            XCB_ATOM_WINDOW, 0, 1);
}

/// Absent where the window manager does not tell.
std::optional<xcb_window_t> X11Panels::activeWindow(xcb_get_property_cookie_t asked) const {
    const XcbOwned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection.xcb(), asked, nullptr));
    if (!reply || reply->format != 32 || reply->value_len == 0)
        return std::nullopt;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
}

std::optional<xcb_window_t> X11Panels::activeAtKey() const {
    if (const auto asked = std::exchange(m_activeAtKeyAsked, std::nullopt))
        m_activeAtKey = activeWindow(*asked);
    return m_activeAtKey;
}

void X11Panels::activeWindowChanged() {
    if (!m_key)
        return;
    const auto active = activeWindow(askForActiveWindow());
    if (active && active != XCB_WINDOW_NONE && active != activeAtKey())
        m_key->resignKey();
}

} // namespace quillet
