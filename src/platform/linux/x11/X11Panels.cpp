#include "platform/linux/x11/X11Panels.h"

#include "platform/linux/x11/X11Panel.h"

#include <algorithm>
#include <QGuiApplication>

namespace quillet {

X11Panels::X11Panels(X11Connection& connection, X11RawInput& rawInput, const X11Screens& screens,
                     Scheduler& scheduler)
    : m_connection(connection),
      m_rawInput(rawInput),
      m_screens(screens),
      m_scheduler(scheduler),
      m_activeWindow(connection.atom("_NET_ACTIVE_WINDOW")),
      m_compositor(connection.atom("_NET_WM_CM_S" + QByteArray::number(connection.screenNumber()))),
      m_listening(connection.listen([this](const xcb_generic_event_t& event) {
          if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
              return;
          const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
          if (property.window == m_connection.root() && property.atom == m_activeWindow)
              activeWindowChanged();
      })) {}

std::unique_ptr<Panel> X11Panels::make(QWidget& content, const PanelStyle& style) {
    auto panel = std::make_unique<X11Panel>(*this, content, style);
    m_panels.push_back(panel.get());
    return panel;
}

bool X11Panels::isTranslucent() const {
    const XcbOwned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        m_connection.xcb(), xcb_get_selection_owner(m_connection.xcb(), m_compositor), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
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
    if (!m_key)
        m_activeAtKey = activeWindow();
    else if (m_key != &panel)
        m_key->resignKey();
    m_key = &panel;
    if (!m_clicks) {
        m_clicks = m_rawInput.watch(X11RawInput::Kind::buttonPress,
                                    [this](uint32_t button) { buttonPressed(button); });
    }
}

void X11Panels::gaveUpKey(const X11Panel& panel) {
    if (m_key != &panel)
        return;
    m_key = nullptr;
    m_clicks.reset();
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
    const auto* toolkit = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!pointer || !toolkit)
        return false;
    const xcb_setup_t* setup = xcb_get_setup(toolkit->connection());
    return pointer->child != XCB_WINDOW_NONE &&
           (pointer->child & ~setup->resource_id_mask) == setup->resource_id_base;
}

bool X11Panels::isKeyboardBack() const {
    if (m_key)
        return false;
    const auto active = activeWindow();
    return active != XCB_WINDOW_NONE && (!m_activeAtKey || active == m_activeAtKey);
}

void X11Panels::resignKey() {
    if (m_key)
        m_key->resignKey();
}

/// Absent where the window manager does not tell.
std::optional<xcb_window_t> X11Panels::activeWindow() const {
    const auto active =
        m_connection.values(m_connection.root(), m_activeWindow, XCB_ATOM_WINDOW, 1);
    return active.empty() ? std::nullopt : std::optional(xcb_window_t{active.front()});
}

void X11Panels::activeWindowChanged() {
    if (!m_key)
        return;
    const auto active = activeWindow();
    if (active && active != XCB_WINDOW_NONE && active != m_activeAtKey)
        m_key->resignKey();
}

} // namespace quillet
