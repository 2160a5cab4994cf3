#include "support/FakeApplication.h"

#include "support/Eventually.h"

#include <algorithm>
#include <QtGlobal>

namespace quillet {

namespace {

/// Values of a property of 32-bit items.
template<typename... Values>
QByteArray words(Values... values) {
    const std::array items{static_cast<uint32_t>(values)...};
    return {reinterpret_cast<const char*>(items.data()), sizeof items};
}

} // namespace

FakeApplication::FakeApplication(const QByteArray& display, const QByteArray& windowClass,
                                 const WindowForm& form)
    : m_client(display) {
    // A window that has gone may still count as the active one, and its number is free again.
    do
        m_shown = xcb_generate_id(m_client.connection());
    while (isActive());
    xcb_create_window(m_client.connection(), XCB_COPY_FROM_PARENT, m_shown, m_client.root(),
                      static_cast<int16_t>(form.frame.x()), static_cast<int16_t>(form.frame.y()),
                      static_cast<uint16_t>(form.frame.width()),
                      static_cast<uint16_t>(form.frame.height()), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const QByteArray instanceAndClass = windowClass.toLower() + '\0' + windowClass + '\0';
    m_client.setProperty(m_shown, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, instanceAndClass);
    m_client.setProperty(m_shown, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, windowClass);
    describe(form);
    // A window manager that has only just started may overlook a window; a slow one needs its time.
    std::chrono::milliseconds patience(100);
    const auto shown = [&] {
        xcb_unmap_window(m_client.connection(), m_shown);
        xcb_map_window(m_client.connection(), m_shown);
        xcb_flush(m_client.connection());
        return eventually([this] { return isActive(); }, patience *= 2);
    };
    if (!eventually(shown, std::chrono::seconds(10)))
        qFatal("the window manager did not make the window active");
}

bool FakeApplication::isActive() const {
    const auto active = m_client.property(m_client.root(), m_client.atom("_NET_ACTIVE_WINDOW"));
    return active.bytes.startsWith(words(m_shown)); // some name a second window, too
}

QRect FakeApplication::visibleFrame() const {
    if (m_ownShadow > 0) {
        return geometry(m_shown).adjusted(m_ownShadow, m_ownShadow, -m_ownShadow, -m_ownShadow);
    }
    // The window manager's frame is what stands directly on the root.
    xcb_window_t outermost = m_shown;
    for (;;) {
        const std::unique_ptr<xcb_query_tree_reply_t, XClient::Free> tree(xcb_query_tree_reply(
            m_client.connection(), xcb_query_tree(m_client.connection(), outermost), nullptr));
        if (!tree || tree->parent == m_client.root())
            return geometry(outermost);
        outermost = tree->parent;
    }
}

void FakeApplication::setOwnShadow(int width) {
    m_ownShadow = width;
    m_client.setProperty(m_shown, m_client.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL,
                         words(width, width, width, width), 32);
    xcb_flush(m_client.connection());
}

void FakeApplication::resize(const QSize& size) {
    const std::array values{static_cast<uint32_t>(size.width()),
                            static_cast<uint32_t>(size.height())};
    xcb_configure_window(m_client.connection(), m_shown,
                         XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, values.data());
    xcb_flush(m_client.connection());
}

void FakeApplication::reserve(const std::array<uint32_t, 12>& edges) {
    m_client.setProperty(m_shown, m_client.atom("_NET_WM_STRUT_PARTIAL"), XCB_ATOM_CARDINAL,
                         {reinterpret_cast<const char*>(edges.data()), sizeof edges}, 32);
    m_client.serverTime(); // it has arrived
}

void FakeApplication::setType(const QByteArray& type) {
    m_client.setProperty(m_shown, m_client.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM,
                         m_client.atomList({type}), 32);
    m_client.serverTime(); // it has arrived
}

void FakeApplication::addStates(const std::vector<QByteArray>& states) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_shown;
    message.type = m_client.atom("_NET_WM_STATE");
    message.data.data32[0] = 1; // add
    for (size_t i = 0; i < states.size(); ++i)
        message.data.data32[1 + i] = m_client.atom(states[i]);
    xcb_send_event(m_client.connection(), 0, m_client.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_client.connection());
    for (const QByteArray& state : states) {
        if (!eventually([&] { return hasState(state); }))
            qFatal("the window manager did not grant %s", state.constData());
    }
}

bool FakeApplication::hasState(const QByteArray& state) const {
    const auto states = m_client.property(m_shown, m_client.atom("_NET_WM_STATE"));
    const auto names = m_client.atomNames(states.bytes);
    return std::find(names.begin(), names.end(), state) != names.end();
}

void FakeApplication::describe(const WindowForm& form) {
    static constexpr uint32_t placeIsChosen = 1 << 0;
    static constexpr uint32_t minimumIsGiven = 1 << 4;
    static constexpr uint32_t stepIsGiven = 1 << 6;
    m_client.setProperty(m_shown, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
                         words(placeIsChosen | minimumIsGiven | stepIsGiven, 0, 0, 0, 0,
                               form.minimum.width(), form.minimum.height(), 0, 0, form.step.width(),
                               form.step.height(), 0, 0, 0, 0, 0, 0, 0),
                         32);
    if (!form.type.isEmpty())
        setType(form.type);
    if (form.ownShadow > 0) {
        static constexpr uint32_t decorationIsGiven = 1 << 1;
        const xcb_atom_t manners = m_client.atom("_MOTIF_WM_HINTS");
        m_client.setProperty(m_shown, manners, manners, words(decorationIsGiven, 0, 0, 0, 0), 32);
        setOwnShadow(form.ownShadow);
    }
}

QRect FakeApplication::geometry(xcb_window_t window) const {
    xcb_connection_t* xcb = m_client.connection();
    const std::unique_ptr<xcb_get_geometry_reply_t, XClient::Free> size(
        xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr));
    const std::unique_ptr<xcb_translate_coordinates_reply_t, XClient::Free> place(
        xcb_translate_coordinates_reply(
            xcb, xcb_translate_coordinates(xcb, window, m_client.root(), 0, 0), nullptr));
    if (!size || !place)
        return {};
    const int border = size->border_width;
    return {place->dst_x - border, place->dst_y - border, size->width + 2 * border,
            size->height + 2 * border};
}

} // namespace quillet
