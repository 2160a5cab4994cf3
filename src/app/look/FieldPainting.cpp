#include "app/look/FieldPainting.h"
#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <cmath>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quillet {

void paintField(QPainter& painter, const QRectF& rect, FieldShape shape,
                const ThemeColors& colors) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    switch (shape) {
    case FieldShape::rounded:
        painter.setBrush(colors.field);
        painter.setPen(QPen(colors.controlBorder, 1));
        painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), 6.5, 6.5);
        break;
    case FieldShape::capsule:
        painter.setBrush(colors.primaryAt(0.06));
        painter.setPen(Qt::NoPen);
        painter.drawRoundedRect(rect, rect.height() / 2, rect.height() / 2);
        break;
    }
    painter.restore();
}

void paintSearchSymbol(QPainter& painter, const QRectF& field, const ThemeColors& colors) {
    paintSymbol(painter, {field.left() + 10, field.top(), 14, field.height()}, u"magnifyingglass"_s,
                13, colors.secondary);
}

void paintCaret(QPainter& painter, const QRectF& line) {
    constexpr double width = 1.5;
    painter.fillRect(QRectF(line.left(), line.top(), width, line.height()), Theme::accent);
}

QSizeF tooltipSize(const QString& text) {
    const TextStyle& style = TextStyles::subheadline;
    return {std::ceil(textWidth(text, style)) + 16, style.lineHeight + 8};
}

void paintTooltip(QPainter& painter, const QRectF& rect, const QString& text,
                  const ThemeColors& colors) {
    paintToastShadow(painter, rect, tooltipRadius, colors);
    paintGlassCard(painter, rect, tooltipRadius, colors, Material::thick);
    paintText(painter, rect, Qt::AlignCenter, text, TextStyles::subheadline, colors.primary);
}

} // namespace quillet
