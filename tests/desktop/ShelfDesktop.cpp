#include "desktop/ShelfDesktop.h"

#include <cstring>
#include <QJsonDocument>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

Editor::Editor(DesktopSession& session)
    : m_process(session.start(QStringLiteral(QUILLET_DESKTOP_CLIENT), {u"edit"_s})) {
    XClient client(session.display());
    const auto isActive = [&] {
        read();
        return m_isActive && activeWindow(client) == m_window;
    };
    if (!eventually(isActive, 10s))
        qFatal("the editor did not become active");
}

QString Editor::text() {
    read();
    return m_text;
}

void Editor::read() {
    m_process->waitForReadyRead(0);
    while (m_process->canReadLine()) {
        const auto state = QJsonDocument::fromJson(m_process->readLine()).object();
        m_text = state["text"_L1].toString();
        m_window = static_cast<xcb_window_t>(state["window"_L1].toInteger());
        m_isActive = state["active"_L1].toBool();
    }
}

ActiveWindowLog::ActiveWindowLog(const QByteArray& display) : m_client(display) {
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_client.connection(), m_client.root(), XCB_CW_EVENT_MASK,
                                 &events);
    m_client.serverTime();
}

int ActiveWindowLog::writes() {
    const xcb_atom_t active = m_client.atom("_NET_ACTIVE_WINDOW");
    m_client.serverTime(); // what was before it has come
    const auto isWrite = [&](const xcb_generic_event_t& event) {
        return eventType(event) == XCB_PROPERTY_NOTIFY &&
               eventAs<xcb_property_notify_event_t>(event).atom == active;
    };
    int count = 0;
    while (m_client.wait(isWrite, 0ms))
        ++count;
    return count;
}

xcb_window_t activeWindow(XClient& client) {
    const auto active = client.property(client.root(), client.atom("_NET_ACTIVE_WINDOW")).bytes;
    xcb_window_t window = XCB_WINDOW_NONE;
    if (static_cast<size_t>(active.size()) == sizeof window)
        std::memcpy(&window, active.constData(), sizeof window);
    return window;
}

void ShelfDesktop::press(const QString& words) {
    ASSERT_EQ(session().run(u"xdotool"_s, words.split(u' ')).exitCode, 0) << words.toStdString();
}

void ShelfDesktop::openShelf(const QString& key) {
    const auto isOpen = [&] {
        press(u"key super+shift+"_s + key);
        return eventually([] { return windowNamed("Quillet Shelf") && isKeyboardGrabbed(); }, 2s);
    };
    ASSERT_TRUE(eventually(isOpen, 8s)) << "the shortcut does not open the shelf";
}

bool ShelfDesktop::isKeyboardGrabbed() {
    XClient client(display());
    // A window that is not on the screen gets no grab; what matters is the reason.
    const std::unique_ptr<xcb_grab_keyboard_reply_t, XClient::Free> grab(xcb_grab_keyboard_reply(
        client.connection(),
        xcb_grab_keyboard(client.connection(), 0, client.window(), XCB_CURRENT_TIME,
                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
        nullptr));
    return grab && grab->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

std::optional<QRect> ShelfDesktop::windowNamed(const QByteArray& title) {
    XClient client(display());
    xcb_connection_t* xcb = client.connection();
    const std::unique_ptr<xcb_query_tree_reply_t, XClient::Free> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, client.root()), nullptr));
    const xcb_window_t* windows = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        if (client.property(windows[i], client.atom("_NET_WM_NAME")).bytes != title)
            continue;
        const std::unique_ptr<xcb_get_window_attributes_reply_t, XClient::Free> attributes(
            xcb_get_window_attributes_reply(xcb, xcb_get_window_attributes(xcb, windows[i]),
                                            nullptr));
        const std::unique_ptr<xcb_get_geometry_reply_t, XClient::Free> place(
            xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, windows[i]), nullptr));
        if (attributes && place && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            return QRect(place->x, place->y, place->width, place->height);
    }
    return std::nullopt;
}

void ShelfDesktop::fillHistory(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        FakeOwner owner(display());
        owner.own(textOffers(QByteArray::fromStdString(text)));
        const auto history = historyOnceNewestIs(text);
        ASSERT_TRUE(!history.empty() && history.front() == text);
    }
}

} // namespace quillet
