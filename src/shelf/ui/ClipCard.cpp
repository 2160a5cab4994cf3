#include "shelf/ui/ClipCard.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>

namespace quillet {

using namespace std::chrono_literals;

namespace {

class ClipCardAccessible : public QAccessibleWidget {
public:
    explicit ClipCardAccessible(ClipCard* card) : QAccessibleWidget(card, QAccessible::ListItem) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = static_cast<const ClipCard*>(widget())->isSelected();
        return state;
    }
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* card = qobject_cast<ClipCard*>(object);
    return card ? new ClipCardAccessible(card) : nullptr;
}

} // namespace

void ClipCard::installAccessibility() {
    QAccessible::installFactory(makeAccessible);
}

ClipCard::ClipCard(QWidget& row, std::shared_ptr<ClipItem> item, Scheduler& scheduler,
                   const Theme& theme)
    : QWidget(&row), m_item(std::move(item)), m_theme(theme), m_animation(scheduler) {
    resize(ClipCardLook::size.toSize());
    connect(&theme, &Theme::changed, this, &ClipCard::repaintAnew);
}

void ClipCard::repaintAnew() {
    m_picture = {};
    update();
}

void ClipCard::setLook(ClipCardLook look) {
    look.selection = m_look.selection;
    if (look == m_look)
        return;
    m_look = std::move(look);
    repaintAnew();
}

void ClipCard::setSelected(bool isSelected) {
    if (m_isSelected == isSelected)
        return;
    m_isSelected = isSelected;
    QAccessible::State changed;
    changed.selected = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
    if (isSelected) {
        QAccessibleEvent selection(this, QAccessible::Selection);
        QAccessible::updateAccessibility(&selection);
    }

    const double target = isSelected ? 1 : 0;
    if (!isVisible()) {
        m_animation.stop();
        return showSelection(target);
    }
    const double start = m_look.selection;
    m_animation.start(Motion::spring(250ms, 0.8), [this, start, target](double progress) {
        showSelection(start + (target - start) * progress);
    });
}

void ClipCard::showSelection(double selection) {
    m_look.selection = selection;
    repaintAnew();
    Q_EMIT selectionShownChanged();
}

void ClipCard::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    // Scrolling moves cards without changing them, and text and pictures are slow to draw.
    if (m_animation.isRunning())
        paintClipCard(painter, rect(), m_look, m_theme.colors());
    else
        painter.drawPixmap(0, 0, picture());
}

const QPixmap& ClipCard::picture() {
    if (m_picture.isNull() || m_picture.devicePixelRatio() != devicePixelRatio()) {
        m_picture = QPixmap(size() * devicePixelRatio());
        m_picture.setDevicePixelRatio(devicePixelRatio());
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        paintClipCard(painter, rect(), m_look, m_theme.colors());
    }
    return m_picture;
}

void ClipCard::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_pressed = event->globalPosition().toPoint();
    Q_EMIT chosen();
}

void ClipCard::mouseMoveEvent(QMouseEvent* event) {
    const int distance = (event->globalPosition().toPoint() - m_pressed).manhattanLength();
    if (event->buttons().testFlag(Qt::LeftButton) && distance >= QApplication::startDragDistance())
        Q_EMIT draggedOut();
}

void ClipCard::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT doubleClicked();
}

void ClipCard::contextMenuEvent(QContextMenuEvent* event) {
    Q_EMIT menuRequested(event->globalPos());
}

} // namespace quillet
