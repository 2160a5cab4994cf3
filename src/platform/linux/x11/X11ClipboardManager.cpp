#include "platform/linux/x11/X11ClipboardManager.h"

#include <algorithm>
#include <xcb/xfixes.h>

namespace quillet {

namespace {

constexpr qint64 largestContent = 64 * 1024 * 1024;
constexpr Scheduler::Duration targetDeadline{3'000}; // programs wait 5 s for us, all in all

} // namespace

X11ClipboardManager::X11ClipboardManager(X11Connection& connection, X11SelectionReader& reader,
                                         xcb_atom_t clipboard)
    : m_connection(connection),
      m_reader(reader),
      m_clipboard(clipboard),
      m_role(connection.atom("CLIPBOARD_MANAGER")),
      m_window(connection.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)),
      m_listening(connection.listen([this](const auto& event) { handle(event); })) {
    xcb_xfixes_select_selection_input(connection.xcb(), m_window, m_role,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    takeRole();
}

X11ClipboardManager::Answers X11ClipboardManager::takeSaved() {
    m_saving.reset();
    return std::exchange(m_saved, {});
}

void X11ClipboardManager::forget() {
    if (m_saving)
        endSaving(false);
    m_saved.clear();
}

void X11ClipboardManager::takeRole() {
    xcb_connection_t* xcb = m_connection.xcb();
    const auto owner = [&] {
        const XcbOwned<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_role), nullptr));
        return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    };
    xcb_grab_server(xcb); // nobody can take it between the look and the taking
    if (owner() == XCB_WINDOW_NONE)
        xcb_set_selection_owner(xcb, m_window, m_role, XCB_CURRENT_TIME);
    xcb_ungrab_server(xcb);
    m_active = owner() == m_window;
}

void X11ClipboardManager::handle(const xcb_generic_event_t& event) {
    const uint8_t code = event.response_type & 0x7f;
    if (code == m_connection.xfixesEvent() + XCB_XFIXES_SELECTION_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (change.selection != m_role)
            return;
        m_active = change.owner == m_window;
        if (change.owner == XCB_WINDOW_NONE ||
            change.subtype != XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER)
            takeRole();
    } else if (code == XCB_SELECTION_REQUEST) {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == m_window && request.selection == m_role)
            handleRequest(request);
    }
}

void X11ClipboardManager::handleRequest(const xcb_selection_request_event_t& event) {
    if (event.target == m_connection.atom("TARGETS")) {
        const xcb_atom_t targets[] = {event.target, m_connection.atom("SAVE_TARGETS")};
        xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, event.requestor,
                            event.property, XCB_ATOM_ATOM, 32, 2, targets);
        m_connection.answerRequest(event, event.property);
        return;
    }
    if (event.target != m_connection.atom("SAVE_TARGETS") || m_saving) {
        m_connection.answerRequest(event, XCB_ATOM_NONE);
        return;
    }
    m_saving = Saving{event, targetsToSave(event), largestContent, false};
    reconsider();
}

void X11ClipboardManager::reconsider() {
    if (!m_saving || m_saving->begun)
        return;
    switch (maySave()) {
    case Verdict::notYet:
        return;
    case Verdict::refuse:
        endSaving(false);
        return;
    case Verdict::save:
        m_saving->begun = true;
        if (m_saving->targets.empty()) {
            for (const QByteArray& target : offeredTargets())
                m_saving->targets.push_back(target);
        }
        m_saved.clear();
        saveNext();
    }
}

/// What the program lists in the property of its request; empty where it leaves the choice to us.
std::deque<QByteArray>
X11ClipboardManager::targetsToSave(const xcb_selection_request_event_t& event) const {
    if (event.property == XCB_ATOM_NONE)
        return {};
    const QList<QByteArray> listed =
        m_connection.atomNames(m_connection.values(event.requestor, event.property, XCB_ATOM_ATOM));
    return {listed.begin(), listed.end()};
}

void X11ClipboardManager::saveNext() {
    while (!m_saving->targets.empty() && X11Targets::isAboutTheSelection(m_saving->targets.front()))
        m_saving->targets.pop_front();
    if (m_saving->targets.empty()) {
        endSaving(!m_saved.empty());
        return;
    }
    const QByteArray target = m_saving->targets.front();
    m_saving->targets.pop_front();
    m_reader.read(
        {m_clipboard, m_connection.atom(target), m_saving->request.time, m_saving->bytesLeft,
         targetDeadline},
        [this, target](const X11Delivery& delivery) {
            if (!m_saving)
                return;
            const bool isBytes = delivery.format == 8;
            if (delivery.outcome == PasteboardReading::Outcome::data && isBytes) {
                m_saving->bytesLeft -= delivery.bytes.size();
                const QByteArray type = m_connection.atomNames({delivery.type}).value(0, target);
                m_saved.push_back({target, type, [bytes = delivery.bytes] { return bytes; }});
            }
            saveNext();
        });
}

void X11ClipboardManager::endSaving(bool saved) {
    const xcb_selection_request_event_t request = m_saving->request;
    m_saving.reset();
    m_connection.answerRequest(request, saved ? request.property : xcb_atom_t{XCB_ATOM_NONE});
}

} // namespace quillet
