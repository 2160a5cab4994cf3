#include "shelf/ui/ShelfHeader.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>

namespace quillet {

namespace {

constexpr int spacing = 12;
constexpr int chipSpacing = 4;

} // namespace

ShelfHeader::ShelfHeader(QWidget& parent, ShelfModel& model, const Look& look,
                         Pasteboard& pasteboard, std::function<void()> onClose)
    : QWidget(&parent),
      m_look(look),
      m_search(new SearchField(look, pasteboard, tr("Search clipboard"), this)) {
    constexpr int room = static_cast<int>(focusRingReach);
    setContentsMargins(room, room, room, room);
    m_search->resize(m_search->sizeHint());
    m_search->setFocus();
    connect(m_search, &QLineEdit::textEdited, &model, &ShelfModel::setQuery);
    connect(&model, &ShelfModel::queryChanged, m_search, [this, &model] {
        if (m_search->text() != model.query())
            m_search->setText(model.query());
    });
    connect(&model, &ShelfModel::showTokenChanged, m_search, [this] { m_search->setFocus(); });
    for (const ShelfModel::Filter filter : ShelfModel::filters)
        addChip(model, filter);
    m_close = new SymbolButton(look, QStringLiteral("xmark"), tr("Close (Esc)"), this, 11);
    m_close->resize(22, 22);
    connect(m_close, &QAbstractButton::clicked, this, std::move(onClose));
}

void ShelfHeader::addChip(ShelfModel& model, ShelfModel::Filter filter) {
    auto* chip = new Chip(m_look, ShelfModel::title(filter), this);
    chip->resize(chip->sizeHint());
    chip->setChecked(model.filter() == filter);
    connect(&model, &ShelfModel::filterChanged, chip,
            [chip, &model, filter] { chip->setChecked(model.filter() == filter); });
    connect(chip, &QAbstractButton::clicked, &model,
            [&model, filter] { model.chooseFilter(filter); });
    m_chips.push_back(chip);
}

void ShelfHeader::resizeEvent(QResizeEvent*) {
    const auto centred = [this](const QWidget& widget) { return (height() - widget.height()) / 2; };
    m_search->move(contentsRect().left(), centred(*m_search));
    int left = m_search->geometry().right() + 1 + spacing;
    for (Chip* chip : m_chips) {
        chip->move(left, centred(*chip));
        left += chip->width() + chipSpacing;
    }
    m_close->move(contentsRect().right() + 1 - m_close->width(), centred(*m_close));
}

/// Gets the keys that a chip or the close button has no use for.
void ShelfHeader::keyPressEvent(QKeyEvent* event) {
    const bool isForSearch =
        !event->text().isEmpty() || event->modifiers().testFlag(Qt::ControlModifier);
    if (!isForSearch || window()->focusWidget() == m_search)
        return event->ignore();
    m_search->setFocus();
    QCoreApplication::sendEvent(m_search, event);
}

void ShelfHeader::paintEvent(QPaintEvent*) {
    const QString hint = tr("↩ paste  ⇧↩ plain text  ⌘P pin  ⌘⌫ delete");
    const int chipsEnd = m_chips.back()->geometry().right();
    const QRectF room(chipsEnd + spacing, 0, m_close->x() - chipsEnd - 2 * spacing, height());
    if (textWidth(hint, TextStyles::caption) > room.width())
        return;
    QPainter painter(this);
    paintText(painter, room, Qt::AlignRight | Qt::AlignVCenter, hint, TextStyles::caption,
              m_look.colors().tertiary);
}

} // namespace quillet
