#include "app/look/Buttons.h"

#include <QPainter>

namespace quillet {

Button::Button(const Look& look, ButtonKind kind, const QString& text, QWidget* parent,
               ButtonSize size)
    : QPushButton(text, parent),
      m_look(look),
      m_kind(kind),
      m_size(size),
      m_tracker(*this, look, cornerRadius(size), margin) {}

QSize Button::sizeHint() const {
    const ButtonLook look{text(), m_kind, m_size, {}};
    return buttonSize(look).toSize() + QSize(2 * margin, 2 * margin);
}

void Button::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintButton(painter, rect().adjusted(margin, margin, -margin, -margin),
                {text(), m_kind, m_size, m_tracker.state(isDown())}, m_look.colors());
}

SymbolButton::SymbolButton(const Look& look, const QString& symbol, const QString& help,
                           QWidget* parent, double fontSize)
    : QPushButton(parent),
      m_look(look),
      m_symbol(symbol),
      m_fontSize(fontSize),
      m_tracker(*this, look, symbolButtonRadius) {
    setToolTip(help);
    setAccessibleName(help);
}

void SymbolButton::setSymbol(const QString& symbol) {
    m_symbol = symbol;
    update();
}

void SymbolButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSymbolButton(painter, rect(),
                      {m_symbol, m_fontSize, SymbolWeight::regular, m_tracker.state(isDown())},
                      m_look.colors());
}

Chip::Chip(const Look& look, const QString& text, QWidget* parent)
    : QPushButton(text, parent), m_look(look), m_tracker(*this, look, chipSize(text).height() / 2) {
    setCheckable(true);
}

QSize Chip::sizeHint() const {
    return chipSize(text()).toSize();
}

void Chip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintChip(painter, rect(), {text(), isChecked(), m_tracker.state(isDown())}, m_look.colors());
}

KeyCap::KeyCap(const Look& look, const QString& keys, QWidget* parent)
    : QLabel(keys, parent), m_look(look) {
    connect(&look.theme, &Theme::changed, this, [this] { update(); });
}

QSize KeyCap::sizeHint() const {
    return keyCapSize(text()).toSize();
}

void KeyCap::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintKeyCap(painter, rect(), text(), m_look.colors());
}

} // namespace quillet
