#pragma once

#include "clipboard/ClipContext.h"
#include "clipboard/PasteboardReader.h"
#include "platform/Workspace.h"
#include "settings/Sounds.h"

#include <set>

namespace quillet {

/// The clipboard history. Watches the pasteboard, records each new copy unless it is private or
/// comes from an ignored application, recognises what was copied before, and keeps the history
/// within its limits of age and number. Everybody who shows or uses the history does it through
/// this object; items() is always what the context fetches, newest first.
class ClipboardStore : public QObject {
    Q_OBJECT

public:
    /// Types whose presence marks a copy as not to be recorded.
    static const std::set<QString>& privateTypes();
    static ClipItem::Kind classify(QStringView text) { return quillet::classify(text); }
    static QString hash(QByteArrayView bytes) { return contentHash(bytes); }

    /// What is on the pasteboard already is not recorded.
    ClipboardStore(ClipContext& context, Pasteboard& pasteboard, Preferences& preferences,
                   Scheduler& scheduler, Workspace& workspace, Sounds& sounds);
    ~ClipboardStore() override;

    /// Starts watching the pasteboard.
    void start();

    const ClipItems& items() const { return m_items; }

    /// Puts an item on the pasteboard and moves it to the top. False where the pasteboard did not
    /// take it.
    bool copyToPasteboard(const std::shared_ptr<ClipItem>& item, bool plainText);
    void togglePin(const std::shared_ptr<ClipItem>& item);
    void deleteItem(const std::shared_ptr<ClipItem>& item);
    void clear(bool keepPinned);

    /// Whether something of the history is not on disk yet because writing it failed.
    bool hasUnsavedChanges() const;

    /// The item that was recorded for a state of the pasteboard; null when there is none or it
    /// has been deleted since.
    std::shared_ptr<ClipItem> recordedItem(qint64 changeCount) const;

    /// Whether the present content of the pasteboard is private or an ignored application's.
    bool isContentConfidential() const;

Q_SIGNALS:
    void itemsChanged();

private:
    /// A copy on its way into the history.
    struct Capture {
        qint64 changeCount = 0;
        QDateTime date;
        std::optional<RunningApplication> source;
    };

    void poll();
    void readPasteboard();
    void insert(Captured captured, const QString& bundleID, const QString& appName);
    void stage(const QUuid& id, const Captured& captured, std::function<void(ClipPayload)> done);
    void add(ClipItem::Fields fields);
    void recorded(const std::shared_ptr<ClipItem>& item);
    void prune();
    void saveAndReload();
    void reload();
    bool isMarkedPrivate() const;
    bool isIgnored(const std::optional<RunningApplication>& application) const;
    void discard(const std::shared_ptr<ClipItem>& item);

    ClipContext& m_context;
    Pasteboard& m_pasteboard;
    Preferences& m_preferences;
    Scheduler& m_scheduler;
    Workspace& m_workspace;
    Sounds& m_sounds;

    ClipItems m_items;
    qint64 m_lastChangeCount = 0;
    std::unique_ptr<RepeatingTimer> m_timer;

    PasteboardReader m_reader;
    std::optional<Capture> m_capture;
    std::optional<bool> m_isConfidential; ///< of the change polled last, if that got so far
    qint64 m_recordedChangeCount = -1;
    std::weak_ptr<ClipItem> m_recordedItem;
    Alive m_alive;
};

} // namespace quillet
