#include "platform/linux/x11/X11SelectionOwner.h"

#include <algorithm>

namespace quillet {

namespace {

constexpr qsizetype largestIncrement = 256 * 1024;
constexpr Scheduler::Duration silenceAllowed{30'000};

template<typename T>
void setValues(const X11Connection& connection, xcb_window_t window, xcb_atom_t property,
               xcb_atom_t type, const std::vector<T>& values) {
    static_assert(sizeof(T) == 4);
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 32,
                        static_cast<uint32_t>(values.size()), values.data());
}

void setBytes(const X11Connection& connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, QByteArrayView bytes) {
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<uint32_t>(bytes.size()), bytes.data());
}

} // namespace

X11SelectionOwner::X11SelectionOwner(X11Connection& connection, Scheduler& scheduler,
                                     xcb_atom_t selection)
    : m_connection(connection),
      m_scheduler(scheduler),
      m_selection(selection),
      m_window(connection.createHiddenWindow(XCB_EVENT_MASK_NO_EVENT)),
      m_increment(std::min<qsizetype>(
          largestIncrement, qsizetype{xcb_get_maximum_request_length(connection.xcb())} * 4 - 64)),
      m_listening(connection.listen([this](const auto& event) { handle(event); })) {}

bool X11SelectionOwner::take(Answers answers) {
    xcb_connection_t* xcb = m_connection.xcb();
    xcb_set_selection_owner(xcb, m_window, m_selection, XCB_CURRENT_TIME);
    own(std::move(answers));
    const XcbOwned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_selection), nullptr));
    return owner && owner->owner == m_window;
}

bool X11SelectionOwner::takeIfFree(Answers answers, xcb_timestamp_t since) {
    xcb_connection_t* xcb = m_connection.xcb();
    xcb_grab_server(xcb); // nobody can take it between the look and the taking
    const XcbOwned<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, m_selection), nullptr));
    const bool isFree = owner && owner->owner == XCB_WINDOW_NONE;
    if (isFree)
        xcb_set_selection_owner(xcb, m_window, m_selection, since);
    xcb_ungrab_server(xcb);
    m_connection.flush();
    if (isFree)
        own(std::move(answers));
    return isFree;
}

void X11SelectionOwner::own(Answers answers) {
    m_answers = std::move(answers);
    m_contents.clear();
    m_ownedSince = XCB_CURRENT_TIME;
}

void X11SelectionOwner::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & ~0x80) {
    case XCB_SELECTION_REQUEST: {
        const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
        if (request.owner == m_window && request.selection == m_selection)
            handleRequest(request);
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (property.state == XCB_PROPERTY_DELETE)
            sendNext(property.window, property.atom);
        break;
    }
    case XCB_DESTROY_NOTIFY:
        drop(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        break;
    }
}

void X11SelectionOwner::handleRequest(const xcb_selection_request_event_t& event) {
    const bool beforeOurTime = event.time != XCB_CURRENT_TIME && m_ownedSince != XCB_CURRENT_TIME &&
                               event.time < m_ownedSince;
    if (!m_answers || beforeOurTime) {
        m_connection.answerRequest(event, XCB_ATOM_NONE);
        return;
    }
    auto request = std::make_shared<Request>();
    request->event = event;
    if (event.property == XCB_ATOM_NONE) // requestors older than the ICCCM
        request->event.property = event.target;
    if (event.target == m_connection.atom("MULTIPLE")) {
        request->pairs =
            m_connection.values(event.requestor, event.property, m_connection.atom("ATOM_PAIR"));
        request->refused = request->pairs.empty() || request->pairs.size() % 2 != 0;
    }
    if (request->refused)
        m_connection.answerRequest(event, XCB_ATOM_NONE);
    else
        convertAll(request);
}

void X11SelectionOwner::convertAll(const SharedRequest& request) {
    if (request->pairs.empty()) {
        request->open = 1;
        convert(request, 0, request->event.target, request->event.property);
        return;
    }
    request->open = request->pairs.size() / 2;
    for (size_t pair = 0; pair < request->pairs.size() / 2; ++pair)
        convert(request, pair, request->pairs[pair * 2], request->pairs[pair * 2 + 1]);
}

void X11SelectionOwner::convert(const SharedRequest& request, size_t pair, xcb_atom_t target,
                                xcb_atom_t property) {
    const xcb_window_t requestor = request->event.requestor;
    if (target == m_connection.atom("TARGETS")) {
        std::vector<xcb_atom_t> targets = {target, m_connection.atom("TIMESTAMP"),
                                           m_connection.atom("MULTIPLE")};
        for (const auto& answer : *m_answers)
            targets.push_back(m_connection.atom(answer.target));
        setValues(m_connection, requestor, property, XCB_ATOM_ATOM, targets);
        settle(request, pair, true);
        return;
    }
    if (target == m_connection.atom("TIMESTAMP")) {
        setValues(m_connection, requestor, property, XCB_ATOM_INTEGER,
                  std::vector<xcb_timestamp_t>{m_ownedSince});
        settle(request, pair, true);
        return;
    }
    const auto answer = std::find_if(m_answers->begin(), m_answers->end(), [&](const auto& a) {
        return m_connection.atom(a.target) == target;
    });
    if (answer == m_answers->end()) {
        settle(request, pair, false);
        return;
    }
    const xcb_atom_t type = m_connection.atom(answer->type);
    whenRead(*answer, [this, request, pair, property, type](const SharedContent& content) {
        const xcb_window_t to = request->event.requestor;
        settle(request, pair, deliver(to, property, type, content));
    });
}

void X11SelectionOwner::whenRead(const X11Targets::Answer& answer, Use use) {
    std::weak_ptr<Content>& known = m_contents[answer.target];
    SharedContent content = known.lock();
    if (content && content->isRead) {
        use(content);
        return;
    }
    const bool isNew = !content;
    if (isNew)
        known = content = std::make_shared<Content>();
    content->waiting.push_back(std::move(use));
    if (!isNew)
        return;
    // Off the main thread: even a text may have to be read from disk and encoded.
    m_scheduler.background([content, read = answer.bytes] { content->bytes = read(); },
                           m_alive([content] {
                               content->isRead = true;
                               for (const Use& waiting : std::exchange(content->waiting, {}))
                                   waiting(content);
                           }));
}

/// Notes one conversion's end; answers the requestor when it was the last.
void X11SelectionOwner::settle(const SharedRequest& request, size_t pair, bool delivered) {
    if (request->pairs.empty()) {
        m_connection.answerRequest(request->event,
                                   delivered ? request->event.property : xcb_atom_t{XCB_ATOM_NONE});
        return;
    }
    if (!delivered)
        request->pairs[pair * 2 + 1] = XCB_ATOM_NONE;
    if (--request->open > 0)
        return;
    setValues(m_connection, request->event.requestor, request->event.property,
              m_connection.atom("ATOM_PAIR"), request->pairs);
    m_connection.answerRequest(request->event, request->event.property);
}

bool X11SelectionOwner::deliver(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                                const SharedContent& content) {
    if (content->bytes.isNull())
        return false;
    if (content->bytes.size() <= m_increment) {
        setBytes(m_connection, requestor, property, type, content->bytes);
        return true;
    }
    // A window of ours, or the root, is no requestor: to watch it would undo our own watching.
    if (requestor == m_connection.root() || m_connection.owns(requestor))
        return false;
    // A requestor that starts over under the same property has given up what was under way.
    m_sendings.remove_if(
        [&](const Sending& s) { return s.requestor == requestor && s.property == property; });
    watch(requestor, true);
    setValues(m_connection, requestor, property, m_connection.atom("INCR"),
              std::vector<uint32_t>{static_cast<uint32_t>(content->bytes.size())});
    Sending& sending =
        m_sendings.emplace_back(Sending{requestor, property, type, content, 0, nullptr});
    restartSilence(sending);
    return true;
}

void X11SelectionOwner::sendNext(xcb_window_t requestor, xcb_atom_t property) {
    const auto sending = std::find_if(m_sendings.begin(), m_sendings.end(), [&](const Sending& s) {
        return s.requestor == requestor && s.property == property;
    });
    if (sending == m_sendings.end())
        return;
    const QByteArrayView bytes = sending->content->bytes;
    const qsizetype size = std::min(m_increment, bytes.size() - sending->sent);
    setBytes(m_connection, requestor, property, sending->type, bytes.sliced(sending->sent, size));
    sending->sent += size;
    if (size > 0) {
        restartSilence(*sending);
        return;
    }
    m_sendings.erase(sending);
    unwatchIfDone(requestor);
}

void X11SelectionOwner::unwatchIfDone(xcb_window_t requestor) {
    const bool more = std::any_of(m_sendings.begin(), m_sendings.end(),
                                  [&](const Sending& s) { return s.requestor == requestor; });
    if (!more)
        watch(requestor, false);
}

void X11SelectionOwner::drop(xcb_window_t requestor) {
    m_sendings.remove_if([&](const Sending& s) { return s.requestor == requestor; });
}

void X11SelectionOwner::restartSilence(Sending& sending) {
    const auto giveUp = [this, requestor = sending.requestor, property = sending.property] {
        m_sendings.remove_if(
            [&](const Sending& s) { return s.requestor == requestor && s.property == property; });
        unwatchIfDone(requestor);
    };
    sending.silence = m_scheduler.after(silenceAllowed, giveUp);
}

void X11SelectionOwner::watch(xcb_window_t requestor, bool on) {
    const uint32_t mask =
        on ? uint32_t{XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY} : 0;
    xcb_change_window_attributes(m_connection.xcb(), requestor, XCB_CW_EVENT_MASK, &mask);
    m_connection.flush();
}

} // namespace quillet
