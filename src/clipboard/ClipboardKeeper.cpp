#include "clipboard/ClipboardKeeper.h"
#include "clipboard/ClipContents.h"

namespace quillet {

ClipboardKeeper::ClipboardKeeper(ClipboardStore& store, Pasteboard& pasteboard)
    : m_store(store), m_pasteboard(pasteboard) {
    pasteboard.onOwnerGone = [this] {
        m_orphanedChangeCount = m_pasteboard.changeCount();
        keepIfRecorded();
    };
    pasteboard.mayOutliveOwner = [this] { return !m_store.isContentConfidential(); };
    // The content may still be on its way into the history when its owner goes.
    QObject::connect(&store, &ClipboardStore::itemsChanged, &store,
                     m_alive([this] { keepIfRecorded(); }));
}

ClipboardKeeper::~ClipboardKeeper() {
    m_pasteboard.onOwnerGone = nullptr;
    m_pasteboard.mayOutliveOwner = nullptr;
}

void ClipboardKeeper::keepIfRecorded() {
    if (m_orphanedChangeCount != m_pasteboard.changeCount())
        return;
    const auto item = m_store.recordedItem(*m_orphanedChangeCount);
    if (!item || !item->isContentReadable())
        return;
    m_orphanedChangeCount.reset();
    m_pasteboard.keep(pasteboardContents(*item, false));
}

} // namespace quillet
