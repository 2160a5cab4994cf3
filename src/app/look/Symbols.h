#pragma once

#include <QString>

class QPainter;
class QColor;
class QRectF;

namespace quillet {

enum class SymbolWeight { light, regular, semibold, bold };

/// Whether there is a symbol of this name, such as "magnifyingglass" or "pin.fill".
bool hasSymbol(const QString& name);

/// The side of the square in which a symbol is drawn beside text of `fontSize`.
constexpr double symbolSide(double fontSize) {
    return fontSize + 1;
}

/// Paints a symbol centred in `rect`, in one colour. Nothing without a symbol of this name.
void paintSymbol(QPainter& painter, const QRectF& rect, const QString& name, double fontSize,
                 const QColor& color, SymbolWeight weight = SymbolWeight::regular);

} // namespace quillet
