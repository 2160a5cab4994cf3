#include "settings/ui/ShortcutHint.h"

#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr double hintRadius = 12;
constexpr int inset = 12;
constexpr double titleTop = 9;
constexpr double titleLeft = 35;
constexpr int keysTop = 32;
constexpr double symbolFontSize = 14;

} // namespace

ShortcutHint::ShortcutHint(const Look& look, const QString& symbol, const QString& title,
                           QWidget* parent)
    : QWidget(parent), m_look(look), m_symbol(symbol), m_title(title), m_keys(look, {}, this) {
    connect(&look.theme, &Theme::changed, this, [this] { update(); });
}

void ShortcutHint::setKeys(const QString& keys) {
    m_keys.setText(keys);
    m_keys.setGeometry({{inset, keysTop}, m_keys.sizeHint()});
    setAccessibleName(m_title + u", "_s + keys);
}

void ShortcutHint::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ThemeColors& colors = m_look.colors();
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.cardFill);
    painter.drawRoundedRect(rect(), hintRadius, hintRadius);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.cardStroke, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), hintRadius - 0.5,
                            hintRadius - 0.5);
    const TextStyle style = TextStyles::body.weighing(QFont::Medium);
    const QRectF line(0, titleTop, width(), style.lineHeight);
    const double side = symbolSide(symbolFontSize);
    paintSymbol(painter, {inset, line.top(), side, line.height()}, m_symbol, symbolFontSize,
                colors.accentText);
    paintText(painter, line.adjusted(titleLeft, 0, 0, 0), Qt::AlignLeft, m_title, style,
              colors.primary);
}

} // namespace quillet
