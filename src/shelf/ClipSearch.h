#pragma once

#include "clipboard/ClipContext.h"
#include "platform/Alive.h"
#include "platform/Scheduler.h"

#include <QCache>
#include <QHash>

namespace quillet {

/// Finds items that contain a text, whatever the case of its letters. Keeps each item's search text
/// in a form made for comparing, so that a keystroke only compares. Long texts are read in the
/// background when a search first needs them; what was read last stays at hand until release().
class ClipSearch {
public:
    explicit ClipSearch(Scheduler& scheduler);

    /// Makes these items ready in the background, and forgets all others.
    void prepare(const ClipItems& items);

    /// Sets what to look for.
    void setNeedle(const QString& needle);

    /// Whether the item contains the needle. False as long as its text has not been read; then
    /// onProgress tells.
    bool matches(const std::shared_ptr<ClipItem>& item);

    /// Whether no answer is waiting for a text to be read.
    bool isComplete() const { return !m_isReading; }

    /// Lets go of the long texts. To be called when nobody searches for a while.
    void release();

    /// Called from the event loop when items match that did not when they were asked for, and when
    /// the answers have become complete.
    std::function<void()> onProgress;

private:
    /// UTF-8 that is equal for texts that differ in case alone.
    static QByteArray comparable(const QString& text);

    bool contains(const QByteArray& comparableText) const;
    bool matchesLong(const std::shared_ptr<ClipItem>& item);
    void readPending();

    Scheduler& m_scheduler;
    QByteArray m_needle;
    QHash<QUuid, QByteArray> m_short;
    QCache<QUuid, QByteArray> m_long;
    QHash<QUuid, bool> m_verdicts; ///< of long texts, on the present needle
    ClipItems m_pending;           ///< long texts to read for the present needle
    bool m_isReading = false;
    Alive m_reading; ///< what is being read is of use
    Alive m_alive;
};

} // namespace quillet
