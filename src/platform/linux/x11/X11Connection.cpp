#include "platform/linux/x11/X11Connection.h"

#include <algorithm>
#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <xcb/res.h>
#include <xcb/xfixes.h>

namespace quillet {

Q_LOGGING_CATEGORY(logX11, "quillet.x11", QtWarningMsg)

namespace {

constexpr qint64 turnMilliseconds = 8;

xcb_screen_t* screenOf(xcb_connection_t* xcb, int number) {
    auto it = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (; it.rem > 0; xcb_screen_next(&it), --number) {
        if (number == 0)
            return it.data;
    }
    return nullptr;
}

bool isMadeThrough(xcb_connection_t* xcb, xcb_window_t window) {
    const xcb_setup_t* setup = xcb_get_setup(xcb);
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

} // namespace

xcb_connection_t* X11Connection::toolkit() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

bool X11Connection::displayAnswers() {
    xcb_connection_t* xcb = xcb_connect(nullptr, nullptr);
    const bool answers = !xcb_connection_has_error(xcb);
    xcb_disconnect(xcb);
    return answers;
}

std::unique_ptr<X11Connection> X11Connection::open() {
    int screenNumber = 0;
    xcb_connection_t* xcb = xcb_connect(nullptr, &screenNumber);
    xcb_screen_t* screen = nullptr;
    if (!xcb_connection_has_error(xcb))
        screen = screenOf(xcb, screenNumber);
    if (screen) {
        const auto* extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
        if (extension && extension->present) {
            const XcbOwned<xcb_xfixes_query_version_reply_t> version(
                xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, 4, 0), nullptr));
            if (version && version->major_version >= 2) {
                return std::unique_ptr<X11Connection>(
                    new X11Connection(xcb, screenNumber, screen, extension->first_event));
            }
        }
    }
    xcb_disconnect(xcb);
    return nullptr;
}

X11Connection::X11Connection(xcb_connection_t* xcb, int screenNumber, xcb_screen_t* screen,
                             uint8_t xfixesEvent)
    : m_xcb(xcb),
      m_screenNumber(screenNumber),
      m_screen(screen),
      m_xfixesEvent(xfixesEvent),
      m_notifier(xcb_get_file_descriptor(xcb), QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11Connection::drain);
    // Waiting for a reply can pull events off the socket, which then stays quiet.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &X11Connection::drain);
    const uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, root(), XCB_CW_EVENT_MASK, &mask);
}

X11Connection::~X11Connection() {
    m_notifier.setEnabled(false);
    xcb_disconnect(m_xcb);
}

bool X11Connection::owns(xcb_window_t window) const {
    return isMadeThrough(m_xcb, window);
}

bool X11Connection::isOurs(xcb_window_t window) const {
    return owns(window) || (toolkit() && isMadeThrough(toolkit(), window));
}

/// By the server, which knows better than the client; by the client's word where the server does
/// not say.
qint64 X11Connection::pidOf(xcb_window_t window) const {
    const auto* extension = xcb_get_extension_data(m_xcb, &xcb_res_id);
    if (extension && extension->present) {
        const xcb_res_client_id_spec_t asked{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
        const XcbOwned<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
            m_xcb, xcb_res_query_client_ids(m_xcb, 1, &asked), nullptr));
        if (reply) {
            for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem > 0;
                 xcb_res_client_id_value_next(&it)) {
                if (xcb_res_client_id_value_value_length(it.data) > 0)
                    return *xcb_res_client_id_value_value(it.data);
            }
        }
    }
    const auto told = values(window, atom("_NET_WM_PID"), XCB_ATOM_CARDINAL, 1);
    return told.empty() ? 0 : told.front();
}

xcb_atom_t X11Connection::atom(const QByteArray& name) const {
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd())
        return *known;
    const XcbOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        m_xcb, xcb_intern_atom(m_xcb, 0, static_cast<uint16_t>(name.size()), name.constData()),
        nullptr));
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    m_atoms.insert(name, atom);
    m_names.insert(atom, name);
    return atom;
}

QList<QByteArray> X11Connection::atomNames(const std::vector<xcb_atom_t>& atoms) const {
    std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
    for (const xcb_atom_t atom : atoms) {
        if (!m_names.contains(atom))
            asked.emplace_back(atom, xcb_get_atom_name(m_xcb, atom));
    }
    for (const auto& [atom, cookie] : asked) {
        const XcbOwned<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(m_xcb, cookie, nullptr));
        if (reply) {
            m_names.insert(atom, QByteArray(xcb_get_atom_name_name(reply.get()),
                                            xcb_get_atom_name_name_length(reply.get())));
        }
    }
    QList<QByteArray> names;
    for (const xcb_atom_t atom : atoms) {
        const auto name = m_names.constFind(atom);
        if (name != m_names.constEnd())
            names.append(*name);
    }
    return names;
}

xcb_window_t X11Connection::createHiddenWindow(uint32_t eventMask) const {
    const xcb_window_t window = xcb_generate_id(m_xcb);
    xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, window, root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, m_screen->root_visual, XCB_CW_EVENT_MASK,
                      &eventMask);
    return window;
}

std::vector<uint32_t> X11Connection::values(xcb_window_t window, xcb_atom_t property,
                                            xcb_atom_t type, uint32_t most) const {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_xcb, xcb_get_property(m_xcb, 0, window, property, type, 0, most), nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

QByteArray X11Connection::bytes(xcb_window_t window, xcb_atom_t property) const {
    const XcbOwned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        m_xcb, xcb_get_property(m_xcb, 0, window, property, XCB_ATOM_ANY, 0, 16 * 1024), nullptr));
    if (!reply || reply->format != 8)
        return {};
    return QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())),
                      xcb_get_property_value_length(reply.get()));
}

void X11Connection::askWindowManager(xcb_window_t window, xcb_atom_t request,
                                     const std::array<uint32_t, 5>& data) const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = request;
    std::copy(data.begin(), data.end(), message.data.data32);
    xcb_send_event(m_xcb, 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    flush();
}

bool X11Connection::windowManagerKnows(xcb_atom_t hint) const {
    const auto known = values(root(), atom("_NET_SUPPORTED"), XCB_ATOM_ATOM);
    return std::find(known.begin(), known.end(), hint) != known.end();
}

void X11Connection::answerRequest(const xcb_selection_request_event_t& request,
                                  xcb_atom_t property) const {
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = property;
    // An event takes 32 bytes on the wire, more than this one's structure.
    char wire[32] = {};
    std::copy_n(reinterpret_cast<const char*>(&answer), sizeof answer, wire);
    xcb_send_event(m_xcb, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, wire);
    flush();
}

X11Connection::Listening X11Connection::listen(Listener listener) {
    auto shared = std::make_shared<Listener>(std::move(listener));
    m_listeners.push_back(shared);
    return shared;
}

void X11Connection::drain() {
    if (m_draining)
        return;
    m_draining = true;
    QElapsedTimer turn;
    turn.start();
    while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(m_xcb)}) {
        dispatch(*event);
        if (turn.elapsed() >= turnMilliseconds) {
            continueNextTurn();
            break;
        }
    }
    m_draining = false;
    xcb_flush(m_xcb);
    if (xcb_connection_has_error(m_xcb)) {
        // The socket of a dead server stays readable for ever.
        if (m_notifier.isEnabled())
            qCWarning(logX11, "lost the connection to the X server");
        m_notifier.setEnabled(false);
    }
}

void X11Connection::continueNextTurn() {
    if (m_turnPending)
        return;
    m_turnPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_turnPending = false;
            drain();
        },
        Qt::QueuedConnection);
}

void X11Connection::dispatch(const xcb_generic_event_t& event) {
    if (event.response_type == 0) {
        // Other programs' windows come and go while we talk about them.
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
        qCDebug(logX11, "X error %d for request %d", error.error_code, error.major_code);
        return;
    }
    std::erase_if(m_listeners, [](const auto& listener) { return listener.expired(); });
    const auto listeners = m_listeners; // a listener may come or go while events are handed out
    for (const auto& weak : listeners) {
        if (const auto listener = weak.lock())
            (*listener)(event);
    }
}

} // namespace quillet
