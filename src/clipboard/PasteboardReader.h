#pragma once

#include "clipboard/Captured.h"
#include "platform/Alive.h"
#include "platform/Pasteboard.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"

namespace quillet {

/// Turns what is on the pasteboard into a record. Asks for one kind of content at a time, the most
/// telling first, and for the next only when that yielded nothing. Large content is worked on in
/// the background. One reading runs at a time.
class PasteboardReader {
public:
    using Completion = std::function<void(std::optional<Captured>)>;

    PasteboardReader(Pasteboard& pasteboard, const Preferences& preferences, Scheduler& scheduler);

    /// `completion` runs once, inside the call or later; without a record when there is nothing to
    /// record, when it is too large or too slow, or when a newer change came first.
    void read(Completion completion);

private:
    void tryFlavor(size_t index);
    void digest(size_t index, QByteArray bytes);
    void finishFlavor(size_t index, std::optional<Captured> captured);
    void finish(std::optional<Captured> captured);

    Pasteboard& m_pasteboard;
    const Preferences& m_preferences;
    Scheduler& m_scheduler;
    qint64 m_changeCount = 0;
    Completion m_completion;
    Alive m_alive;
};

} // namespace quillet
