#include "shelf/ui/ShelfView.h"
#include "shelf/PictureContent.h"

#include <QApplication>
#include <QDrag>
#include <QPixmap>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr int padding = 16;
constexpr int headerTop = 14;
constexpr int headerHeight = 30;
constexpr int spacing = 12;

std::optional<QUrl> linkURL(const ClipItem& item) {
    if (item.kind() != ClipItem::Kind::link)
        return std::nullopt;
    const QUrl url(item.text().value_or(QString()).trimmed());
    return url.isValid() && !url.scheme().isEmpty() ? std::optional(url) : std::nullopt;
}

} // namespace

ShelfView::ShelfView(ShelfModel& model, const Services& services, Paste onPaste,
                     std::function<void()> onClose)
    : m_model(model),
      m_services(services),
      m_onPaste(std::move(onPaste)),
      m_previews(services.look.scheduler, services.thumbnails),
      m_looks(services.applications, m_previews, services.workspace, services.look.scheduler),
      m_row(new ClipRow(*this, model, m_looks, services.look.scheduler, services.look.theme)),
      m_emptyState(new ShelfEmptyState(*this, services.look.theme)),
      m_header(
          new ShelfHeader(*this, model, services.look, services.pasteboard, std::move(onClose))) {
    connect(&model, &ShelfModel::visibleItemsChanged, this, &ShelfView::showContent);
    connect(&model, &ShelfModel::queryChanged, this, &ShelfView::showContent);
    connect(m_row, &ClipRow::pasteRequested, this,
            [this](const std::shared_ptr<ClipItem>& item) { m_onPaste(item, false); });
    connect(m_row, &ClipRow::menuRequested, this, &ShelfView::popUpMenu);
    connect(m_row, &ClipRow::draggedOut, this, &ShelfView::drag);
    m_previews.onReady = [this] { m_row->refresh(); };
    showContent();
}

void ShelfView::resizeEvent(QResizeEvent*) {
    m_row->setGeometry(rect());
    const QRect header(padding, headerTop, width() - 2 * padding, headerHeight);
    m_header->setGeometry(header.marginsAdded(m_header->contentsMargins()));
    const int top = headerTop + headerHeight + spacing;
    m_emptyState->setGeometry(padding, top, width() - 2 * padding, height() - top - padding);
}

void ShelfView::showContent() {
    const bool isEmpty = m_model.visibleItems().empty();
    m_row->setVisible(!isEmpty);
    m_emptyState->setVisible(isEmpty && m_model.isSearchComplete());
    m_emptyState->setQuery(m_model.query());
}

void ShelfView::copy(const std::shared_ptr<ClipItem>& item) {
    if (item->isContentReadable() && m_services.store.copyToPasteboard(item, false))
        m_services.sounds.play(Sounds::Event::copy);
    else
        QApplication::beep(); // a message would appear behind the shelf
}

std::unique_ptr<Menu> ShelfView::menuFor(const std::shared_ptr<ClipItem>& item) {
    auto menu = std::make_unique<Menu>(m_services.look, this);
    menu->addAction(tr("Paste"), this, [this, item] { m_onPaste(item, false); });
    menu->addAction(tr("Paste as Plain Text"), this, [this, item] { m_onPaste(item, true); });
    menu->addAction(tr("Copy"), this, [this, item] { copy(item); });
    menu->addSeparator();
    menu->addAction(item->isPinned() ? tr("Unpin") : tr("Pin"), this,
                    [this, item] { m_services.store.togglePin(item); });
    if (item->kind() == ClipItem::Kind::file && !item->filePaths().isEmpty())
        menu->addAction(tr("Show in Finder"), this,
                        [this, item] { m_services.workspace.reveal({item->filePaths().front()}); });
    if (const auto url = linkURL(*item))
        menu->addAction(tr("Open Link"), this, [this, url] { m_services.workspace.open(*url); });
    menu->addSeparator();
    connect(menu->addDestructiveAction(tr("Delete")), &QAction::triggered, this,
            [this, item] { m_services.store.deleteItem(item); });
    return menu;
}

void ShelfView::popUpMenu(const std::shared_ptr<ClipItem>& item, QPoint globalPosition) {
    m_menu = menuFor(item);
    m_menu->popupAt(globalPosition);
}

std::unique_ptr<QMimeData> ShelfView::dragContent(const ClipItem& item) {
    auto content = std::make_unique<QMimeData>();
    if (item.kind() == ClipItem::Kind::file && !item.filePaths().isEmpty()) {
        content->setUrls({item.fileURLs().front()});
        return content;
    }
    const auto png = item.kind() == ClipItem::Kind::image ? item.imageSource() : nullptr;
    if (png && item.isImageDecodable()) {
        const QString name =
            tr("Image %1.png").arg(item.createdAt().toString(u"yyyy-MM-dd HH.mm.ss"));
        const auto file = m_services.dragFiles.file(item.id(), name);
        // Most probably it is there before anybody asks for it.
        m_services.look.scheduler.background([file, png] { file->write(png); }, [] {});
        return std::make_unique<PictureContent>(png, file);
    }
    content->setText(item.text().value_or(QString()));
    return content;
}

void ShelfView::drag(const std::shared_ptr<ClipItem>& item, const QPixmap& picture) {
    // The row is the source: the card may go while the drag is under way.
    auto* drag = new QDrag(m_row);
    drag->setMimeData(dragContent(*item).release());
    drag->setPixmap(picture.scaledToHeight(picture.height() / 2, Qt::SmoothTransformation));
    drag->exec(Qt::CopyAction);
}

} // namespace quillet
