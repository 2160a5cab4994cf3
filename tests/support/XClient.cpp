#include "support/XClient.h"

#include <algorithm>
#include <poll.h>

namespace quillet {

using Clock = std::chrono::steady_clock;

XClient::XClient(const QByteArray& display)
    : m_connection(xcb_connect(display.constData(), nullptr)) {
    if (!connected())
        return;
    m_window = xcb_generate_id(m_connection);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    xcb_flush(m_connection);
}

XClient::~XClient() {
    xcb_disconnect(m_connection);
}

xcb_window_t XClient::root() const {
    return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
}

xcb_atom_t XClient::atom(const QByteArray& name) {
    if (const auto known = m_atoms.constFind(name); known != m_atoms.cend())
        return *known;
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    m_atoms.insert(name, atom);
    return atom;
}

QByteArray XClient::atomName(xcb_atom_t atom) {
    const std::unique_ptr<xcb_get_atom_name_reply_t, Free> reply(
        xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, atom), nullptr));
    if (!reply)
        return {};
    return {xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get())};
}

QByteArray XClient::atomList(const std::vector<QByteArray>& names) {
    QByteArray list;
    for (const QByteArray& name : names) {
        const xcb_atom_t value = atom(name);
        list.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    return list;
}

std::vector<QByteArray> XClient::atomNames(const QByteArray& list) {
    std::vector<QByteArray> names;
    const auto* atoms = reinterpret_cast<const xcb_atom_t*>(list.constData());
    const auto count = static_cast<size_t>(list.size()) / sizeof(xcb_atom_t);
    std::transform(atoms, atoms + count, std::back_inserter(names),
                   [this](xcb_atom_t value) { return atomName(value); });
    return names;
}

void XClient::setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
                          const QByteArray& bytes, uint8_t format) {
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, format,
                        static_cast<uint32_t>(bytes.size() / (format / 8)), bytes.constData());
}

XClient::Property XClient::property(xcb_window_t window, xcb_atom_t property, bool takeAway) {
    const auto cookie = xcb_get_property(m_connection, takeAway, window, property,
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, 0x1fffffff);
    const std::unique_ptr<xcb_get_property_reply_t, Free> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply)
        return {};
    return {reply->type,
            {static_cast<const char*>(xcb_get_property_value(reply.get())),
             xcb_get_property_value_length(reply.get())}};
}

xcb_window_t XClient::selectionOwner(xcb_atom_t selection) {
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> reply(
        xcb_get_selection_owner_reply(m_connection,
                                      xcb_get_selection_owner(m_connection, selection), nullptr));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_timestamp_t XClient::serverTime() {
    const xcb_atom_t clock = atom("QUILLET_TEST_CLOCK");
    xcb_change_property(m_connection, XCB_PROP_MODE_APPEND, m_window, clock, XCB_ATOM_INTEGER, 32,
                        0, nullptr);
    const Event event = wait(
        [&](const xcb_generic_event_t& candidate) {
            return eventType(candidate) == XCB_PROPERTY_NOTIFY &&
                   eventAs<xcb_property_notify_event_t>(candidate).atom == clock;
        },
        std::chrono::seconds(5));
    return event ? eventAs<xcb_property_notify_event_t>(*event).time
                 : xcb_timestamp_t{XCB_CURRENT_TIME};
}

XClient::Event XClient::wait(const std::function<bool(const xcb_generic_event_t&)>& wanted,
                             std::chrono::milliseconds deadline, int wakeFd) {
    const auto end = Clock::now() + deadline;
    xcb_flush(m_connection);
    while (true) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection))
            m_waiting.emplace_back(event);
        const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                        [&](const Event& event) { return wanted(*event); });
        if (found != m_waiting.end()) {
            Event event = std::move(*found);
            m_waiting.erase(found);
            return event;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        if (left <= 0 || !connected())
            return nullptr;
        pollfd files[] = {{xcb_get_file_descriptor(m_connection), POLLIN, 0}, {wakeFd, POLLIN, 0}};
        poll(files, 2, static_cast<int>(left));
        if ((files[1].revents & POLLIN) != 0)
            return nullptr;
    }
}

} // namespace quillet
