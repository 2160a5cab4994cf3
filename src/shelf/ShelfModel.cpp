#include "shelf/ShelfModel.h"

#include <algorithm>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

QString withoutSurroundingSpace(QStringView text) {
    const auto isSpace = [](QChar c) {
        return c == u'\t' || c.category() == QChar::Separator_Space;
    };
    while (!text.isEmpty() && isSpace(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isSpace(text.back()))
        text.chop(1);
    return text.toString();
}

auto find(const ClipItems& items, const std::optional<QUuid>& id) {
    return std::ranges::find_if(items, [&id](const auto& item) { return item->id() == id; });
}

std::optional<QUuid> firstID(const ClipItems& items) {
    return items.empty() ? std::nullopt : std::optional(items.front()->id());
}

} // namespace

QString ShelfModel::rawValue(Filter filter) {
    switch (filter) {
    case Filter::all:
        return u"all"_s;
    case Filter::pinned:
        return u"pinned"_s;
    case Filter::text:
        return u"text"_s;
    case Filter::link:
        return u"link"_s;
    case Filter::image:
        return u"image"_s;
    case Filter::file:
        return u"file"_s;
    }
    return {};
}

QString ShelfModel::title(Filter filter) {
    switch (filter) {
    case Filter::all:
        return tr("All");
    case Filter::pinned:
        return tr("Pinned");
    case Filter::text:
        return tr("Text");
    case Filter::link:
        return tr("Links");
    case Filter::image:
        return tr("Images");
    case Filter::file:
        return tr("Files");
    }
    return {};
}

ShelfModel::ShelfModel(ClipboardStore& store, Scheduler& scheduler)
    : m_store(store), m_search(scheduler) {
    connect(&store, &ClipboardStore::itemsChanged, this, &ShelfModel::forgetVisibleItems);
    m_search.onProgress = [this] { forgetVisibleItems(); };
}

void ShelfModel::setQuery(const QString& query) {
    if (m_query == query)
        return;
    m_query = query;
    m_search.setNeedle(withoutSurroundingSpace(query));
    forgetVisibleItems();
    Q_EMIT queryChanged();
}

void ShelfModel::setFilter(Filter filter) {
    if (m_filter == filter)
        return;
    m_filter = filter;
    forgetVisibleItems();
    Q_EMIT filterChanged();
}

void ShelfModel::chooseFilter(Filter filter) {
    setFilter(filter);
    setSelectedID(firstID(visibleItems()));
}

void ShelfModel::setSelectedID(const std::optional<QUuid>& id) {
    if (m_selectedID == id)
        return;
    m_selectedID = id;
    Q_EMIT selectedIDChanged();
}

bool ShelfModel::admits(const ClipItem& item) const {
    using Kind = ClipItem::Kind;
    switch (m_filter) {
    case Filter::all:
        return true;
    case Filter::pinned:
        return item.isPinned();
    case Filter::text:
        return item.kind() == Kind::text || item.kind() == Kind::color;
    case Filter::link:
        return item.kind() == Kind::link;
    case Filter::image:
        return item.kind() == Kind::image;
    case Filter::file:
        return item.kind() == Kind::file;
    }
    return false;
}

const ClipItems& ShelfModel::visibleItems() const {
    if (m_visibleItems)
        return *m_visibleItems;
    const bool isSearching = !withoutSurroundingSpace(m_query).isEmpty();
    ClipItems& visible = m_visibleItems.emplace();
    for (const auto& item : m_store.items()) {
        if (admits(*item) && (!isSearching || m_search.matches(item)))
            visible.push_back(item);
    }
    return visible;
}

bool ShelfModel::isSearchComplete() const {
    visibleItems();
    return withoutSurroundingSpace(m_query).isEmpty() || m_search.isComplete();
}

void ShelfModel::forgetVisibleItems() {
    m_visibleItems.reset();
    if (m_isShown) // views of a hidden shelf have nothing to do
        Q_EMIT visibleItemsChanged();
}

std::shared_ptr<ClipItem> ShelfModel::selectedItem() const {
    const ClipItems& items = visibleItems();
    if (items.empty())
        return nullptr;
    const auto found = find(items, m_selectedID);
    return found == items.end() ? items.front() : *found;
}

void ShelfModel::moveSelection(int step) {
    const ClipItems& items = visibleItems();
    if (items.empty())
        return;
    const auto found = find(items, m_selectedID);
    const auto position = found == items.end() ? 0 : found - items.begin();
    const auto last = static_cast<ptrdiff_t>(items.size()) - 1;
    const auto target = std::clamp<ptrdiff_t>(position + step, 0, last);
    setSelectedID(items[static_cast<size_t>(target)]->id());
}

void ShelfModel::resetForShow() {
    m_isShown = true;
    m_search.prepare(m_store.items());
    forgetVisibleItems();
    setQuery({});
    setFilter(Filter::all);
    setSelectedID(firstID(m_store.items()));
    ++m_showToken;
    Q_EMIT showTokenChanged();
}

} // namespace quillet
