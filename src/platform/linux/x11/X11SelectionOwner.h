#pragma once

#include "platform/Alive.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11Targets.h"
#include "platform/Scheduler.h"

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <optional>

namespace quillet {

/// Owns the clipboard and hands it out (ICCCM 2.2 to 2.7): TARGETS, TIMESTAMP, MULTIPLE, and large
/// content in increments, to any number of requestors at a time.
///
/// A requestor that dies or falls silent is dropped; the others do not notice. Content is asked
/// for when it is requested, kept while it is being sent, and shared by all who request it
/// meanwhile: many of them take no more memory than one.
class X11SelectionOwner {
public:
    using Answers = std::vector<X11Targets::Answer>;

    X11SelectionOwner(X11Connection& connection, Scheduler& scheduler, xcb_atom_t selection);

    xcb_window_t window() const { return m_window; }

    /// Takes the selection from whoever has it. False when somebody else has it right after.
    bool take(Answers answers);

    /// Takes the selection unless somebody owns it, as of an earlier time: a copy that another
    /// program began after that still wins over ours.
    bool takeIfFree(Answers answers, xcb_timestamp_t since);

    /// Stops answering: somebody else has the selection. (The driver tells, because it can tell an
    /// old loss from one that concerns the latest ownership.)
    void release() { m_answers.reset(); }

    /// What we offer; absent while the selection is not ours.
    const std::optional<Answers>& answers() const { return m_answers; }

    /// The server's time of our ownership, once it told us.
    void setOwnedSince(xcb_timestamp_t time) { m_ownedSince = time; }

private:
    /// The bytes behind one of the answers.
    struct Content;
    using SharedContent = std::shared_ptr<Content>;
    using Use = std::function<void(const SharedContent&)>;
    struct Content {
        QByteArray bytes;
        bool isRead = false;
        std::vector<Use> waiting; ///< for it to be read
    };

    /// Content on its way to one requestor, in increments.
    struct Sending {
        xcb_window_t requestor;
        xcb_atom_t property;
        xcb_atom_t type;
        SharedContent content;
        qsizetype sent = 0;
        std::unique_ptr<Timer> silence;
    };

    /// One SelectionRequest with all its conversions.
    struct Request {
        xcb_selection_request_event_t event;
        std::vector<uint32_t> pairs; ///< of MULTIPLE: target, property, …; else empty
        size_t open = 0;             ///< conversions not yet answered
        bool refused = false;
    };
    using SharedRequest = std::shared_ptr<Request>;

    void own(Answers answers);
    void handle(const xcb_generic_event_t& event);
    void handleRequest(const xcb_selection_request_event_t& event);
    void convertAll(const SharedRequest& request);
    void convert(const SharedRequest& request, size_t pair, xcb_atom_t target, xcb_atom_t property);
    void settle(const SharedRequest& request, size_t pair, bool delivered);
    void whenRead(const X11Targets::Answer& answer, Use use);
    bool deliver(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                 const SharedContent& content);
    void sendNext(xcb_window_t requestor, xcb_atom_t property);
    void drop(xcb_window_t requestor);
    void restartSilence(Sending& sending);
    void watch(xcb_window_t requestor, bool on);
    void unwatchIfDone(xcb_window_t requestor);

    X11Connection& m_connection;
    Scheduler& m_scheduler;
    xcb_atom_t m_selection;
    xcb_window_t m_window;
    qsizetype m_increment; ///< bytes; the largest piece sent at once
    std::optional<Answers> m_answers;
    xcb_timestamp_t m_ownedSince = XCB_CURRENT_TIME;
    std::map<QByteArray, std::weak_ptr<Content>> m_contents; ///< of the answers, by target
    std::list<Sending> m_sendings;
    X11Connection::Listening m_listening;
    Alive m_alive;
};

} // namespace quillet
