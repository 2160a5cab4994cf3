#include "clipboard/ClipContext.h"
#include "clipboard/ClipboardLog.h"
#include "clipboard/ClipTable.h"
#include "clipboard/SqliteConnection.h"
#include "clipboard/WalCheckpointer.h"

#include <algorithm>
#include <iterator>
#include <QFile>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

bool isNewer(const std::shared_ptr<ClipItem>& a, const std::shared_ptr<ClipItem>& b) {
    return a->createdAt() > b->createdAt();
}

} // namespace

ClipContext::ClipContext(SqliteConnection& database, QString blobFolder,
                         WalCheckpointer& checkpointer)
    : m_database(database), m_blobFolder(std::move(blobFolder)), m_checkpointer(checkpointer) {}

std::optional<ClipItems> ClipContext::fetch(Filter filter) {
    if (!m_items && !load())
        return std::nullopt;
    ClipItems items;
    std::ranges::copy_if(*m_items, std::back_inserter(items), [filter](const auto& item) {
        return filter == Filter::all || !item->isPinned();
    });
    std::ranges::stable_sort(items, isNewer);
    return items;
}

std::shared_ptr<ClipItem> ClipContext::insert(ClipItem::Fields fields) {
    auto item = std::make_shared<ClipItem>(std::move(fields));
    m_inserted.push_back(item);
    if (m_items)
        m_items->insert(m_items->begin(), item);
    return item;
}

QString ClipContext::imagePath(const QUuid& id) const {
    return ClipTable::imagePath(m_blobFolder, id);
}

QString ClipContext::longTextPath(const QUuid& id) const {
    return ClipTable::longTextPath(m_blobFolder, id);
}

void ClipContext::remove(const std::shared_ptr<ClipItem>& item) {
    if (!contains(item))
        return;
    std::erase(*m_items, item);
    m_changed.erase(item);
    if (std::erase(m_inserted, item) > 0)
        removePayloads(*item); // no row refers to them
    else
        m_removed.push_back(item);
}

void ClipContext::setCreatedAt(const std::shared_ptr<ClipItem>& item, const QDateTime& date) {
    item->m_fields.createdAt = date;
    if (!contains(item))
        return; // deleted; whoever still shows it sees the date
    const auto position = std::ranges::find(*m_items, item);
    std::rotate(m_items->begin(), position, position + 1);
    m_changed.insert(item);
}

void ClipContext::setPinned(const std::shared_ptr<ClipItem>& item, bool isPinned) {
    item->m_fields.isPinned = isPinned;
    if (contains(item))
        m_changed.insert(item);
}

bool ClipContext::save() {
    ClipItems ready;
    std::ranges::copy_if(m_inserted, std::back_inserter(ready),
                         [this](const auto& item) { return storePayloads(*item); });
    if (ready.empty() && m_changed.empty() && m_removed.empty())
        return m_inserted.empty();
    if (!m_database.transaction([&] { return writeRows(ready); })) {
        qCWarning(logClipboard) << "The clipboard history could not be saved:"
                                << m_database.error().databaseText();
        return false;
    }
    std::erase_if(m_inserted,
                  [&](const auto& item) { return std::ranges::find(ready, item) != ready.end(); });
    m_changed.clear();
    for (const auto& item : m_removed)
        removePayloads(*item);
    // The log must not keep what was deleted, nor grow for ever.
    constexpr int savesBetweenCheckpoints = 100;
    if (!m_removed.empty() || ++m_savesSinceCheckpoint >= savesBetweenCheckpoints) {
        m_savesSinceCheckpoint = 0;
        m_checkpointer.runSoon();
    }
    m_removed.clear();
    return m_inserted.empty();
}

bool ClipContext::load() {
    QSqlQuery query =
        m_database.prepare(ClipTable::selectStatement + u"ORDER BY createdAt DESC, rowid DESC"_s);
    ClipItems items = m_inserted;
    bool isComplete = query.exec();
    while (isComplete && query.next()) {
        if (auto fields = ClipTable::fieldsInRow(query, m_blobFolder))
            items.push_back(std::make_shared<ClipItem>(*std::move(fields)));
    }
    isComplete = isComplete && !query.lastError().isValid();
    if (isComplete)
        m_items = std::move(items);
    else
        qCWarning(logClipboard) << "The clipboard history could not be read:"
                                << query.lastError().databaseText();
    return isComplete;
}

bool ClipContext::contains(const std::shared_ptr<ClipItem>& item) const {
    return m_items && std::ranges::find(*m_items, item) != m_items->end();
}

bool ClipContext::storePayloads(ClipItem& item) const {
    const auto store = [](std::optional<ClipPayload>& payload, const QString& path) {
        if (!payload || payload->isStored() || payload->store(path))
            return true;
        qCWarning(logClipboard) << "The file of a clip could not be written:" << path;
        return false;
    };
    return store(item.m_fields.imageData, imagePath(item.id())) &&
           store(item.m_fields.longText, longTextPath(item.id()));
}

bool ClipContext::writeRows(const ClipItems& inserted) {
    const auto execute = [this](QSqlQuery& query) {
        if (query.exec())
            return true;
        m_database.setError(query.lastError());
        return false;
    };
    QSqlQuery query = m_database.prepare(ClipTable::removeStatement);
    for (const auto& item : m_removed) {
        query.bindValue(0, ClipTable::idText(item->id()));
        if (!execute(query))
            return false;
    }
    query = m_database.prepare(ClipTable::insertStatement);
    for (const auto& item : inserted) {
        ClipTable::bindAll(query, item->m_fields);
        if (!execute(query))
            return false;
    }
    query = m_database.prepare(ClipTable::updateStatement);
    for (const auto& item : m_changed) {
        query.bindValue(0, item->createdAt().toMSecsSinceEpoch());
        query.bindValue(1, item->isPinned());
        query.bindValue(2, ClipTable::idText(item->id()));
        if (!execute(query))
            return false;
    }
    return true;
}

void ClipContext::removePayloads(const ClipItem& item) const {
    if (item.m_fields.imageData)
        QFile::remove(imagePath(item.id()));
    if (item.m_fields.longText)
        QFile::remove(longTextPath(item.id()));
}

} // namespace quillet
