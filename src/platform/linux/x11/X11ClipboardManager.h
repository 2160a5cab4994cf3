#pragma once

#include "platform/linux/x11/X11SelectionReader.h"
#include "platform/linux/x11/X11Targets.h"

#include <deque>
#include <optional>

namespace quillet {

/// The desktop's clipboard manager, where no other program has that role: takes over, on request
/// (SAVE_TARGETS), the content of a program that is about to quit, and answers only when it has
/// all of it. It holds the manager's selection whenever that is free, and the saved content until
/// the clipboard changes hands.
class X11ClipboardManager {
public:
    using Answers = std::vector<X11Targets::Answer>;

    X11ClipboardManager(X11Connection& connection, X11SelectionReader& reader,
                        xcb_atom_t clipboard);

    enum class Verdict {
        save,
        refuse,
        notYet ///< reconsider() follows
    };

    /// Asked before anything is saved.
    std::function<Verdict()> maySave;

    /// The targets of the current clipboard content, for a program that names none.
    std::function<QList<QByteArray>()> offeredTargets;

    /// Goes on with what was answered `notYet`.
    void reconsider();

    /// Whether the role is ours; else another program has it.
    bool isActive() const { return m_active; }

    /// What was saved of the current clipboard content; leaves nothing behind. Empty where its
    /// owner did not ask for it.
    Answers takeSaved();

    /// Drops what was saved: the clipboard has new content.
    void forget();

private:
    struct Saving {
        xcb_selection_request_event_t request;
        std::deque<QByteArray> targets;
        qint64 bytesLeft;
        bool begun = false;
    };

    void takeRole();
    void handle(const xcb_generic_event_t& event);
    void handleRequest(const xcb_selection_request_event_t& event);
    std::deque<QByteArray> targetsToSave(const xcb_selection_request_event_t& event) const;
    void saveNext();
    void endSaving(bool saved);

    X11Connection& m_connection;
    X11SelectionReader& m_reader;
    xcb_atom_t m_clipboard;
    xcb_atom_t m_role;
    xcb_window_t m_window;
    bool m_active = false;
    std::optional<Saving> m_saving;
    Answers m_saved;
    X11Connection::Listening m_listening;
};

} // namespace quillet
