#pragma once

#include "app/look/Menu.h"
#include "shelf/DragFiles.h"
#include "shelf/ui/ClipRow.h"
#include "shelf/ui/ShelfEmptyState.h"
#include "shelf/ui/ShelfHeader.h"

#include <QMimeData>

namespace quillet {

/// The content of the shelf: the header and below it the row of cards, or why there is none. Shows
/// the model and asks for pasting and closing; the rest of a card's menu it does itself.
class ShelfView : public QWidget {
    Q_OBJECT

public:
    /// What it stands on; everything outlives it.
    struct Services {
        ClipboardStore& store;
        Pasteboard& pasteboard;
        Workspace& workspace;
        Sounds& sounds;
        AppIconStore& applications;
        ThumbnailCache& thumbnails;
        DragFiles& dragFiles;
        Look look;
    };
    using Paste = std::function<void(const std::shared_ptr<ClipItem>& item, bool plainText)>;

    ShelfView(ShelfModel& model, const Services& services, Paste onPaste,
              std::function<void()> onClose);

    ClipRow& row() { return *m_row; }

    /// The menu of a card.
    std::unique_ptr<Menu> menuFor(const std::shared_ptr<ClipItem>& item);

    /// What leaves the shelf when a card is dragged out; null when there is nothing.
    std::unique_ptr<QMimeData> dragContent(const ClipItem& item);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showContent();
    void popUpMenu(const std::shared_ptr<ClipItem>& item, QPoint globalPosition);
    void copy(const std::shared_ptr<ClipItem>& item);
    void drag(const std::shared_ptr<ClipItem>& item, const QPixmap& picture);

    ShelfModel& m_model;
    Services m_services;
    Paste m_onPaste;
    ClipPreviews m_previews;
    ClipCardLooks m_looks;
    ClipRow* m_row;
    ShelfEmptyState* m_emptyState;
    ShelfHeader* m_header;
    std::unique_ptr<Menu> m_menu;
};

} // namespace quillet
