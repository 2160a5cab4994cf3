#include "app/look/ButtonPainting.h"
#include "app/look/Layer.h"
#include "app/look/Shadow.h"

#include <cmath>
#include <QPainter>

namespace quillet {
namespace {

struct ButtonMeasures {
    double height;
    double padding;
    double corner;
    TextStyle style;
};

const ButtonMeasures& measures(ButtonSize size) {
    static const ButtonMeasures small{24, 10, 6, TextStyles::subheadline.weighing(QFont::Medium)};
    static const ButtonMeasures medium{28, 12, 7, TextStyles::body.weighing(QFont::Medium)};
    static const ButtonMeasures large{32, 16, 8, TextStyles::body.weighing(QFont::Medium)};
    switch (size) {
    case ButtonSize::small:
        return small;
    case ButtonSize::medium:
        return medium;
    case ButtonSize::large:
        return large;
    }
    return medium;
}

TextStyle textStyle(const ButtonLook& look) {
    const TextStyle& style = measures(look.size).style;
    return look.kind == ButtonKind::prominent ? style.weighing(QFont::DemiBold) : style;
}

const TextStyle& chipStyle() {
    static const TextStyle style = TextStyles::subheadline.weighing(QFont::Medium);
    return style;
}

const TextStyle& keyCapStyle() {
    static const TextStyle style = TextStyles::subheadline.weighing(QFont::Medium).forShortcut();
    return style;
}

void fillRounded(QPainter& painter, const QRectF& rect, double corner, const QBrush& brush) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, corner, corner);
}

void strokeInside(QPainter& painter, const QRectF& rect, double corner, const QColor& color) {
    painter.setPen(QPen(color, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), corner - 0.5, corner - 0.5);
}

void paintProminentGround(QPainter& painter, const QRectF& rect, double corner,
                          const ControlState& state) {
    if (state.isEnabled)
        paintShadow(painter, rect, corner, {1, 1, 0.28, QColor(60, 40, 200)});
    const QColor ground = state.isPressed ? Theme::accentPressed
                                          : mixed(Theme::accent, Theme::accentHover, state.hover);
    fillRounded(painter, rect, corner, ground);
}

void paintRegularGround(QPainter& painter, const QRectF& rect, double corner,
                        const ControlState& state, const ThemeColors& colors) {
    if (state.isEnabled)
        paintShadow(painter, rect, corner, {1, 0.5, 0.07});
    fillRounded(painter, rect, corner, colors.control);
    const double tint = state.isPressed ? 0.10 : 0.04 * state.hover;
    fillRounded(painter, rect, corner, colors.primaryAt(tint));
    strokeInside(painter, rect, corner, colors.controlBorder);
}

void paintBorderlessGround(QPainter& painter, const QRectF& rect, double corner,
                           const ControlState& state, const ThemeColors& colors) {
    const double tint = state.isPressed ? 0.11 : 0.06 * state.hover;
    fillRounded(painter, rect, corner, colors.primaryAt(tint));
}

void paintGround(QPainter& painter, const QRectF& rect, const ButtonLook& look,
                 const ThemeColors& colors) {
    const double corner = cornerRadius(look.size);
    switch (look.kind) {
    case ButtonKind::prominent:
        paintProminentGround(painter, rect, corner, look.state);
        return;
    case ButtonKind::regular:
        paintRegularGround(painter, rect, corner, look.state, colors);
        return;
    case ButtonKind::borderless:
        paintBorderlessGround(painter, rect, corner, look.state, colors);
        return;
    }
}

} // namespace

QSizeF buttonSize(const ButtonLook& look) {
    const ButtonMeasures& m = measures(look.size);
    return {std::ceil(textWidth(look.text, textStyle(look))) + 2 * m.padding, m.height};
}

double cornerRadius(ButtonSize size) {
    return measures(size).corner;
}

void paintButton(QPainter& target, const QRectF& rect, const ButtonLook& look,
                 const ThemeColors& colors) {
    paintFaded(target, rect, opacity(look.state), [&](QPainter& painter) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        paintGround(painter, rect, look, colors);
        paintText(painter, rect, Qt::AlignCenter, look.text, textStyle(look),
                  look.kind == ButtonKind::prominent ? QColor(Qt::white) : colors.primary);
        painter.restore();
    });
}

void paintSymbolButton(QPainter& target, const QRectF& rect, const SymbolButtonLook& look,
                       const ThemeColors& colors) {
    paintFaded(target, rect, opacity(look.state), [&](QPainter& painter) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        paintBorderlessGround(painter, rect, symbolButtonRadius, look.state, colors);
        paintSymbol(painter, rect, look.symbol, look.fontSize, colors.primary, look.weight);
        painter.restore();
    });
}

QSizeF chipSize(const QString& text) {
    return {std::ceil(textWidth(text, chipStyle())) + 20, 26};
}

void paintChip(QPainter& target, const QRectF& rect, const ChipLook& look,
               const ThemeColors& colors) {
    const double share = look.state.isPressed ? 0.7 : opacity(look.state);
    paintFaded(target, rect, share, [&](QPainter& painter) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor ground = look.isSelected
                                  ? mixed(Theme::accent, Theme::accentHover, look.state.hover)
                                  : colors.primaryAt(0.05 + 0.04 * look.state.hover);
        fillRounded(painter, rect, rect.height() / 2, ground);
        paintText(painter, rect, Qt::AlignCenter, look.text, chipStyle(),
                  look.isSelected ? QColor(Qt::white) : colors.primary);
        painter.restore();
    });
}

QSizeF keyCapSize(const QString& text) {
    return {std::max(24.0, std::ceil(textWidth(text, keyCapStyle()) - 0.5) + 14), 22};
}

void paintKeyCap(QPainter& painter, const QRectF& rect, const QString& text,
                 const ThemeColors& colors) {
    constexpr double corner = 6;
    constexpr double edge = 1.5;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // The darker lower edge is what an underlay of the same shape leaves to be seen.
    fillRounded(painter, rect, corner, colors.control);
    fillRounded(painter, rect, corner, withAlpha(Qt::black, colors.isDark() ? 0.35 : 0.14));
    const QRectF top = rect.adjusted(0, 0, 0, -edge + 0.5);
    fillRounded(painter, top, corner, colors.control);
    strokeInside(painter, rect, corner, colors.keyCapBorder);
    paintText(painter, rect.adjusted(0.5, -0.5, 0, -0.5), Qt::AlignCenter, text, keyCapStyle(),
              colors.primary);
    painter.restore();
}

void paintFocusRing(QPainter& painter, const QRectF& control, double cornerRadius,
                    const ThemeColors& colors) {
    constexpr double out = focusRingReach - 1; // the middle of a line of two points
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colors.accentText, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(control.adjusted(-out, -out, out, out), cornerRadius + out,
                            cornerRadius + out);
    painter.restore();
}

} // namespace quillet
