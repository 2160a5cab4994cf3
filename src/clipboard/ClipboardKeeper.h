#pragma once

#include "clipboard/ClipboardStore.h"

namespace quillet {

/// Keeps the newest clip pastable after the program it came from is gone. Never takes the
/// pasteboard from a living owner, keeps nothing that was not recorded, and changes nothing in the
/// history.
class ClipboardKeeper {
public:
    ClipboardKeeper(ClipboardStore& store, Pasteboard& pasteboard);
    ~ClipboardKeeper();

private:
    void keepIfRecorded();

    ClipboardStore& m_store;
    Pasteboard& m_pasteboard;
    std::optional<qint64> m_orphanedChangeCount; ///< its owner is gone and nothing took its place
    Alive m_alive;
};

} // namespace quillet
