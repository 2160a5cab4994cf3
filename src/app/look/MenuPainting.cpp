#include "app/look/MenuPainting.h"
#include "app/look/ControlState.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <cmath>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

constexpr double inset = 10;
constexpr double checkWidth = 18;

double textInset(CheckColumn column) {
    return column == CheckColumn::present ? inset + checkWidth : inset;
}

} // namespace

double menuRowWidth(const QString& text, CheckColumn checkColumn) {
    constexpr double least = 130; // a menu of short words would look like a mistake
    return std::max(least,
                    textInset(checkColumn) + std::ceil(textWidth(text, TextStyles::body)) + inset);
}

void paintMenuRow(QPainter& painter, const QRectF& rect, const MenuRowLook& look,
                  const ThemeColors& colors) {
    constexpr double corner = 6;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ink = look.isDestructive ? colors.redText : colors.primary;
    if (!look.isEnabled) {
        painter.setOpacity(disabledOpacity);
    } else if (look.isSelected) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(Theme::accent);
        painter.drawRoundedRect(rect, corner, corner);
        ink = Qt::white;
    }
    if (look.isChecked)
        paintSymbol(painter, {rect.left() + inset, rect.top(), 10, rect.height()}, u"checkmark"_s,
                    11, ink, SymbolWeight::semibold);
    paintText(painter, rect.adjusted(textInset(look.checkColumn), 0, -inset, 0),
              Qt::AlignLeft | Qt::AlignVCenter, look.text, TextStyles::body, ink);
    painter.restore();
}

void paintMenuSeparator(QPainter& painter, const QRectF& rect, const ThemeColors& colors) {
    painter.fillRect(
        QRectF(rect.left() + inset, std::floor(rect.center().y()), rect.width() - 2 * inset, 1),
        colors.separator);
}

} // namespace quillet
