#pragma once

#include "clipboard/ClipboardStore.h"
#include "shelf/ClipSearch.h"

namespace quillet {

/// The state behind the shelf: what is searched for, the filter, the selection. Derives from it and
/// from the history which items are visible and which of them is selected: one always is while any
/// is visible. Driven by the shelf's controller and view.
class ShelfModel : public QObject {
    Q_OBJECT

public:
    enum class Filter { all, pinned, text, link, image, file };
    static constexpr std::array filters{Filter::all,  Filter::pinned, Filter::text,
                                        Filter::link, Filter::image,  Filter::file};
    static QString rawValue(Filter filter);
    static QString title(Filter filter);

    ShelfModel(ClipboardStore& store, Scheduler& scheduler);

    const QString& query() const { return m_query; }
    void setQuery(const QString& query);

    Filter filter() const { return m_filter; }
    void setFilter(Filter filter);

    /// Sets the filter and selects the first item that it lets through.
    void chooseFilter(Filter filter);

    /// The item chosen last, visible or not; what counts as selected is selectedItem().
    const std::optional<QUuid>& selectedID() const { return m_selectedID; }
    void setSelectedID(const std::optional<QUuid>& id);

    /// Rises each time the shelf is shown.
    int showToken() const { return m_showToken; }

    /// The items of the history that pass filter and search, newest first. visibleItemsChanged()
    /// tells of another list, but only while the shelf is shown.
    const ClipItems& visibleItems() const;
    std::shared_ptr<ClipItem> selectedItem() const;

    /// Whether all is in visibleItems() that belongs there. Long texts join it once they have been
    /// read; visibleItemsChanged() tells of that, too.
    bool isSearchComplete() const;

    /// Moves the selection by so many places, at most to the first or the last item.
    void moveSelection(int step);

    /// Prepares for being shown: no search, no filter, the newest item selected.
    void resetForShow();

    /// Lets go of what only a shelf in use needs.
    void release() {
        m_isShown = false;
        m_search.release();
    }

Q_SIGNALS:
    void queryChanged();
    void filterChanged();
    void selectedIDChanged();
    void showTokenChanged();
    void visibleItemsChanged();

private:
    bool admits(const ClipItem& item) const;
    void forgetVisibleItems();

    ClipboardStore& m_store;
    QString m_query;
    Filter m_filter = Filter::all;
    std::optional<QUuid> m_selectedID;
    int m_showToken = 0;
    bool m_isShown = false;
    mutable ClipSearch m_search;
    mutable std::optional<ClipItems> m_visibleItems;
};

} // namespace quillet
