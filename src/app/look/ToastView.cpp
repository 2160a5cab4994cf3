#include "app/look/ToastView.h"
#include "app/look/Shadow.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <cmath>
#include <QPainter>

namespace quillet {
namespace {

constexpr double paddingX = 18;
constexpr double paddingY = 12;
constexpr double rowHeight = 22;
constexpr double gap = 10;
constexpr double swatchSide = 22;
constexpr double symbolFontSize = 16;

double leadingWidth(const ToastView& view) {
    return view.swatch ? swatchSide : symbolSide(symbolFontSize);
}

void paintSwatch(QPainter& painter, const QRectF& rect, const QColor& color) {
    constexpr double radius = 6;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRoundedRect(rect, radius, radius);
    painter.setPen(QPen(withAlpha(Qt::white, 0.5), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
}

} // namespace

QSizeF ToastView::size() const {
    const double width = leadingWidth(*this) + gap + std::ceil(textWidth(text, TextStyles::toast));
    return {width + 2 * paddingX, rowHeight + 2 * paddingY};
}

void ToastView::paint(QPainter& painter, const QRectF& card, const ThemeColors& colors,
                      Translucency translucency) const {
    painter.save();
    // Corners of 24 end as a capsule on a card of 46.
    const double radius = std::min(cornerRadius, card.height() / 2);
    if (translucency == Translucency::translucent)
        paintToastShadow(painter, card, radius, colors);
    paintGlassCard(painter, card, radius, colors, Material::regular, translucency);
    QRectF row = card.adjusted(paddingX, paddingY, -paddingX, -paddingY);
    const double leading = leadingWidth(*this);
    const QRectF mark(row.left(), row.top(), leading, row.height());
    if (swatch)
        paintSwatch(painter, mark, *swatch);
    else
        paintSymbol(painter, mark, symbol, symbolFontSize, Theme::accent, SymbolWeight::semibold);
    row.setLeft(row.left() + leading + gap);
    // A rounding error must not elide a text that the card was made for.
    paintText(painter, row, Qt::AlignLeft | Qt::AlignVCenter,
              elidedText(text, TextStyles::toast, row.width() + 0.5), TextStyles::toast,
              colors.primary);
    painter.restore();
}

} // namespace quillet
