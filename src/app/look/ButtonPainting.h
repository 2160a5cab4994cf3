#pragma once

#include "app/look/ControlState.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"
#include "app/look/Theme.h"

namespace quillet {

enum class ButtonKind { prominent, regular, borderless };
enum class ButtonSize { small, medium, large };

struct ButtonLook {
    QString text;
    ButtonKind kind = ButtonKind::regular;
    ButtonSize size = ButtonSize::medium;
    ControlState state;
};

/// The size that the text asks for.
QSizeF buttonSize(const ButtonLook& look);
double cornerRadius(ButtonSize size);
void paintButton(QPainter& painter, const QRectF& rect, const ButtonLook& look,
                 const ThemeColors& colors);

/// A button without ground that shows a symbol only.
struct SymbolButtonLook {
    QString symbol;
    double fontSize = 12;
    SymbolWeight weight = SymbolWeight::regular;
    ControlState state;
};
inline constexpr double symbolButtonRadius = 7;
void paintSymbolButton(QPainter& painter, const QRectF& rect, const SymbolButtonLook& look,
                       const ThemeColors& colors);

/// One of several filters; a capsule.
struct ChipLook {
    QString text;
    bool isSelected = false;
    ControlState state;
};
QSizeF chipSize(const QString& text);
void paintChip(QPainter& painter, const QRectF& rect, const ChipLook& look,
               const ThemeColors& colors);

/// A key or a shortcut as printed on a keyboard.
QSizeF keyCapSize(const QString& text);
void paintKeyCap(QPainter& painter, const QRectF& rect, const QString& text,
                 const ThemeColors& colors);

/// Says where the keyboard is: around a control, two points away from it.
void paintFocusRing(QPainter& painter, const QRectF& control, double cornerRadius,
                    const ThemeColors& colors);

/// How far the ring reaches out of the control.
inline constexpr double focusRingReach = 4;

} // namespace quillet
