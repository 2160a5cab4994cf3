#include "app/look/TogglePainting.h"
#include "app/look/Layer.h"
#include "app/look/Shadow.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <cmath>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

constexpr double knobInset = 2;
constexpr double labelGap = 8;
constexpr double trackHeight = 4;

const TextStyle& segmentStyle() {
    static const TextStyle style = TextStyles::subheadline.weighing(QFont::Medium);
    return style;
}

/// Paints a control at the opacity of its state, ready for shapes without outline.
template<typename Paint>
void paintControl(QPainter& target, const QRectF& rect, const ControlState& state, Paint paint) {
    paintFaded(target, rect, opacity(state), [&paint](QPainter& painter) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        paint(painter);
        painter.restore();
    });
}

void fillRounded(QPainter& painter, const QRectF& rect, double corner, const QColor& color) {
    painter.setBrush(color);
    painter.drawRoundedRect(rect, corner, corner);
}

void paintKnob(QPainter& painter, const QRectF& rect, const ControlState& state) {
    if (state.isEnabled)
        paintShadow(painter, rect, rect.height() / 2, {1, 1, 0.28});
    fillRounded(painter, rect, rect.height() / 2, Qt::white);
}

} // namespace

QSizeF switchSize(SwitchSize size) {
    switch (size) {
    case SwitchSize::small:
        return {32, 18};
    case SwitchSize::regular:
        return {38, 22};
    }
    return {};
}

void paintSwitch(QPainter& target, const QRectF& rect, const SwitchLook& look,
                 const ThemeColors& colors) {
    paintControl(target, rect, look.state, [&](QPainter& painter) {
        const double corner = rect.height() / 2;
        fillRounded(painter, rect, corner, mixed(colors.trackOff, Theme::accent, look.knob));
        const double tint = look.state.isPressed ? 0.10 : 0.04 * look.state.hover;
        fillRounded(painter, rect, corner, colors.primaryAt(tint));
        const double knob = rect.height() - 2 * knobInset;
        const double way = rect.width() - 2 * knobInset - knob;
        paintKnob(painter,
                  {rect.left() + knobInset + way * look.knob, rect.top() + knobInset, knob, knob},
                  look.state);
    });
}

QSizeF checkboxSize(const QString& text) {
    if (text.isEmpty())
        return {checkboxSide, checkboxSide};
    return {checkboxSide + labelGap + std::ceil(textWidth(text, TextStyles::body)), 22};
}

void paintCheckbox(QPainter& target, const QRectF& rect, const CheckboxLook& look,
                   const ThemeColors& colors) {
    paintControl(target, rect, look.state, [&](QPainter& painter) {
        const QRectF box(rect.left(), rect.center().y() - checkboxSide / 2, checkboxSide,
                         checkboxSide);
        fillRounded(painter, box, checkboxRadius, look.isOn ? Theme::accent : colors.field);
        const double tint = look.state.isPressed ? 0.10 : 0.04 * look.state.hover;
        fillRounded(painter, box, checkboxRadius, colors.primaryAt(tint));
        if (look.isOn) {
            paintSymbol(painter, box, u"checkmark"_s, 10, Qt::white, SymbolWeight::bold);
        } else {
            painter.setPen(QPen(colors.primaryAt(colors.isDark() ? 0.20 : 0.24), 1));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(box.adjusted(0.5, 0.5, -0.5, -0.5), checkboxRadius - 0.5,
                                    checkboxRadius - 0.5);
        }
        paintText(painter, rect.adjusted(checkboxSide + labelGap, 0, 0, 0),
                  Qt::AlignLeft | Qt::AlignVCenter, look.text, TextStyles::body, colors.primary);
    });
}

void paintSlider(QPainter& target, const QRectF& rect, const SliderLook& look,
                 const ThemeColors& colors) {
    paintControl(target, rect, look.state, [&](QPainter& painter) {
        QRectF track(rect.left(), rect.center().y() - trackHeight / 2, rect.width(), trackHeight);
        fillRounded(painter, track, trackHeight / 2, colors.trackOff);
        const double knobLeft = rect.left() + (rect.width() - sliderKnob) * look.value;
        track.setRight(knobLeft + sliderKnob / 2);
        fillRounded(painter, track, trackHeight / 2, Theme::accent);
        const QRectF knob(knobLeft, rect.center().y() - sliderKnob / 2, sliderKnob, sliderKnob);
        paintKnob(painter, knob, look.state);
        const double tint = look.state.isPressed ? 0.10 : 0.04 * look.state.hover;
        fillRounded(painter, knob, sliderKnob / 2, withAlpha(Qt::black, tint));
    });
}

QSizeF segmentedSize(const QStringList& titles) {
    double widest = 0;
    for (const QString& title : titles)
        widest = std::max(widest, textWidth(title, segmentStyle()));
    constexpr double padding = 12;
    return {static_cast<double>(titles.size()) * (std::ceil(widest) + 2 * padding) + 4, 28};
}

std::vector<QRectF> segmentRects(const QRectF& rect, qsizetype count) {
    const QRectF inside = rect.adjusted(2, 2, -2, -2);
    const double width = inside.width() / static_cast<double>(count);
    std::vector<QRectF> rects;
    for (qsizetype i = 0; i < count; ++i)
        rects.emplace_back(inside.left() + static_cast<double>(i) * width, inside.top(), width,
                           inside.height());
    return rects;
}

void paintSegmented(QPainter& target, const QRectF& rect, const SegmentedLook& look,
                    const ThemeColors& colors) {
    constexpr double trackCorner = 8;
    constexpr double segmentCorner = 6;
    paintControl(target, rect, look.state, [&](QPainter& painter) {
        fillRounded(painter, rect, trackCorner, colors.primaryAt(0.075));
        const auto rects = segmentRects(rect, look.titles.size());
        for (qsizetype i = 0; i < look.titles.size(); ++i) {
            const QRectF& segment = rects[static_cast<size_t>(i)];
            const bool isChosen = i == look.chosen;
            if (isChosen) {
                if (look.state.isEnabled)
                    paintShadow(painter, segment, segmentCorner, {1, 0.5, 0.24});
                fillRounded(painter, segment, segmentCorner, colors.chosenSegment);
            } else if (i == look.hovered) {
                fillRounded(painter, segment, segmentCorner,
                            colors.primaryAt(look.state.isPressed ? 0.10 : 0.04));
            }
            paintText(painter, segment, Qt::AlignCenter, look.titles[i], segmentStyle(),
                      isChosen ? colors.primary : colors.secondary);
        }
    });
}

} // namespace quillet
