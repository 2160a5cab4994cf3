#include "shelf/ui/ClipRow.h"

#include <algorithm>
#include <cmath>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

namespace quillet {

using namespace std::chrono_literals;

namespace {

constexpr double leading = 18;
constexpr double top = 61;
constexpr double spacing = 14;
constexpr double pitch = ClipCardLook::size.width() + spacing;
constexpr double wheelNotch = pitch / 2;
constexpr int anglePerNotch = QWheelEvent::DefaultDeltasPerStep;
constexpr auto scrollDuration = 150ms;

} // namespace

ClipRow::ClipRow(QWidget& parent, ShelfModel& model, ClipCardLooks& looks, Scheduler& scheduler,
                 const Theme& theme)
    : QWidget(&parent),
      m_model(model),
      m_looks(looks),
      m_scheduler(scheduler),
      m_theme(theme),
      m_scrolling(scheduler) {
    ClipCard::installAccessibility();
    setAccessibleName(tr("Clips"));
    connect(&model, &ShelfModel::visibleItemsChanged, this, &ClipRow::followList);
    connect(&model, &ShelfModel::selectedIDChanged, this, [this] {
        updateSelection();
        scrollToSelection();
    });
    connect(&model, &ShelfModel::showTokenChanged, this, [this] {
        m_scrolling.stop();
        scrollTo(0);
        refresh();
    });
}

std::vector<ClipCard*> ClipRow::cards() const {
    std::vector<ClipCard*> cards;
    for (const auto& [index, card] : m_cards)
        cards.push_back(card);
    return cards;
}

QRectF ClipRow::placeOf(int index) const {
    return {QPointF(leading + index * pitch - std::round(m_offset), top), ClipCardLook::size};
}

double ClipRow::clamped(double offset) const {
    const auto count = static_cast<double>(m_model.visibleItems().size());
    const double contentWidth = 2 * leading + count * pitch - spacing;
    return std::clamp(offset, 0.0, std::max(0.0, contentWidth - width()));
}

void ClipRow::scrollTo(double offset) {
    m_offset = clamped(offset);
    if (!m_scrolling.isRunning())
        m_target = m_offset;
    placeCards();
}

void ClipRow::scrollAnimated(double offset) {
    const double start = m_offset;
    m_target = clamped(offset);
    if (m_target == start)
        return m_scrolling.stop();
    m_scrolling.start(Motion::easeOut(scrollDuration), [this, start](double progress) {
        scrollTo(start + (m_target - start) * progress);
    });
}

void ClipRow::scrollToSelection() {
    const ClipItems& items = m_model.visibleItems();
    const auto selected = std::ranges::find(items, m_model.selectedItem());
    if (selected == items.end())
        return;
    const auto index = static_cast<double>(selected - items.begin());
    const double centre = leading + index * pitch + ClipCardLook::size.width() / 2;
    scrollAnimated(centre - width() / 2.0);
    m_isCentring = true;
}

bool ClipRow::isWhollyInView(const std::shared_ptr<ClipItem>& item) const {
    const auto found = std::ranges::find_if(
        m_cards, [&item](const auto& entry) { return entry.second->item() == item; });
    return found != m_cards.end() && QRectF(rect()).contains(placeOf(found->first));
}

/// Keeps in view what Return pastes. A row that the user has scrolled elsewhere stays there; one
/// on its way to the selected card finds it at another place now.
void ClipRow::followList() {
    const auto selected = m_model.selectedItem();
    const bool isCentring = m_isCentring && m_scrolling.isRunning();
    const bool isFollowed = selected != m_selected.lock() || isWhollyInView(selected);
    refresh();
    if (isCentring || (isFollowed && !isWhollyInView(selected)))
        scrollToSelection();
}

void ClipRow::refresh() {
    // A card keeps its item, whose position may be another one by now.
    const ClipItems& items = m_model.visibleItems();
    std::map<int, ClipCard*> kept;
    for (const auto& [oldIndex, card] : m_cards) {
        const auto found = std::ranges::find(items, card->item());
        if (found == items.end())
            discard(card);
        else
            kept.emplace(static_cast<int>(found - items.begin()), card);
    }
    m_cards = std::move(kept);
    refreshLooks();
    scrollTo(m_offset);
}

void ClipRow::refreshLooks() {
    for (const auto& [index, card] : m_cards)
        showLook(*card, index);
}

void ClipRow::discard(ClipCard* card) {
    // Later, because it may be the card that reported what made it go.
    card->hide();
    card->deleteLater();
}

ClipCard* ClipRow::makeCard(const std::shared_ptr<ClipItem>& item) {
    auto* card = new ClipCard(*this, item, m_scheduler, m_theme);
    card->setSelected(item == m_model.selectedItem());
    connect(card, &ClipCard::selectionShownChanged, this, qOverload<>(&QWidget::update));
    connect(card, &ClipCard::chosen, this, [this, item] { click(item); });
    connect(card, &ClipCard::doubleClicked, this, &ClipRow::pasteClicked);
    connect(card, &ClipCard::draggedOut, this,
            [this, item, card] { Q_EMIT draggedOut(item, card->picture()); });
    connect(card, &ClipCard::menuRequested, this,
            [this, item](QPoint position) { Q_EMIT menuRequested(item, position); });
    return card;
}

void ClipRow::showLook(ClipCard& card, int index) {
    ClipCardLook look = m_looks.look(*card.item(), index);
    const auto count = static_cast<qsizetype>(m_model.visibleItems().size());
    card.setAccessibleName(ClipCardLooks::accessibleName(*card.item(), look, index, count));
    card.setLook(std::move(look));
}

void ClipRow::placeCards() {
    const auto isInView = [this](int index) {
        const QRectF place = placeOf(index);
        return place.right() > 0 && place.left() < width();
    };
    std::erase_if(m_cards, [&](const auto& entry) {
        if (isInView(entry.first))
            return false;
        discard(entry.second);
        return true;
    });
    const ClipItems& items = m_model.visibleItems();
    const int first = std::max(0, static_cast<int>((m_offset - leading) / pitch));
    for (int index = first; index < static_cast<int>(items.size()) && isInView(index); ++index) {
        ClipCard*& card = m_cards[index];
        if (!card) {
            card = makeCard(items[static_cast<size_t>(index)]);
            showLook(*card, index);
        }
        card->move(placeOf(index).topLeft().toPoint());
        card->show();
    }
    updateSelection();
    update();
}

void ClipRow::updateSelection() {
    const auto selected = m_model.selectedItem();
    m_selected = selected;
    for (const auto& [index, card] : m_cards)
        card->setSelected(card->item() == selected);
}

void ClipRow::click(const std::shared_ptr<ClipItem>& item) {
    m_clicked = item;
    m_model.setSelectedID(item->id());
}

/// A click brings its card to the middle, so the second one of a pair may meet another card or
/// none.
void ClipRow::pasteClicked() {
    if (const auto item = std::exchange(m_clicked, nullptr))
        Q_EMIT pasteRequested(item);
}

void ClipRow::mousePressEvent(QMouseEvent*) {
    m_clicked.reset();
}

void ClipRow::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        pasteClicked();
}

void ClipRow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    for (const auto& [index, card] : m_cards)
        paintClipCardShadow(painter, placeOf(index), card->selection());
}

void ClipRow::resizeEvent(QResizeEvent*) {
    scrollTo(m_offset);
}

void ClipRow::wheelEvent(QWheelEvent* event) {
    m_isCentring = false;
    const QPoint pixels = event->pixelDelta();
    const QPoint angle = event->angleDelta();
    const auto larger = [](QPoint delta) {
        return std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    };
    // A touchpad moves with the fingers; a wheel moves in notches, which need easing even where its
    // driver tells pixels, too.
    const bool isNotch = !angle.isNull() && larger(angle) % anglePerNotch == 0;
    if (!pixels.isNull() && !isNotch) {
        m_scrolling.stop();
        scrollTo(m_offset - larger(pixels));
    } else {
        const double from = m_scrolling.isRunning() ? m_target : m_offset;
        scrollAnimated(from - larger(angle) * wheelNotch / anglePerNotch);
    }
    event->accept();
}

} // namespace quillet
