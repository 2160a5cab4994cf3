#pragma once

#include "clipboard/ClipItem.h"

#include <memory>
#include <QObject>
#include <set>
#include <vector>

namespace quillet {

class SqliteConnection;
class WalCheckpointer;

using ClipItems = std::vector<std::shared_ptr<ClipItem>>;

/// The unit of work over the stored items. It has one object per record; changes show at once in
/// what it fetches and become permanent with the next save that succeeds. Owns nothing of the
/// database but the right to write it.
class ClipContext {
public:
    enum class Filter { all, unpinned };

    ClipContext(SqliteConnection& database, QString blobFolder, WalCheckpointer& checkpointer);

    /// The items, newest first; of equal dates the one added or dated last. Absent when the
    /// database cannot be read.
    std::optional<ClipItems> fetch(Filter filter);

    /// Adds a new item. Payloads that are not in their files yet are stored by save(); to have
    /// that done elsewhere, store them first under the paths below.
    std::shared_ptr<ClipItem> insert(ClipItem::Fields fields);
    QString imagePath(const QUuid& id) const;
    QString longTextPath(const QUuid& id) const;

    void remove(const std::shared_ptr<ClipItem>& item);
    void setCreatedAt(const std::shared_ptr<ClipItem>& item, const QDateTime& date);
    void setPinned(const std::shared_ptr<ClipItem>& item, bool isPinned);

    /// Writes what has changed, in one transaction. False when some of it could not be written; it
    /// is kept for the next save.
    bool save();

    /// Whether a save has something to do.
    bool hasChanges() const {
        return !m_inserted.empty() || !m_changed.empty() || !m_removed.empty();
    }

private:
    bool load();
    bool contains(const std::shared_ptr<ClipItem>& item) const;
    bool storePayloads(ClipItem& item) const;
    bool writeRows(const ClipItems& inserted);
    void removePayloads(const ClipItem& item) const;

    SqliteConnection& m_database;
    QString m_blobFolder;
    WalCheckpointer& m_checkpointer;
    std::optional<ClipItems> m_items; ///< absent until they have been read
    ClipItems m_inserted;
    std::set<std::shared_ptr<ClipItem>> m_changed;
    ClipItems m_removed;
    int m_savesSinceCheckpoint = 0;
};

} // namespace quillet
