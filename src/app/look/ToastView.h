#pragma once

#include "app/look/GlassCard.h"

#include <optional>
#include <QSizeF>
#include <QString>

namespace quillet {

/// A short message with a symbol, or with a swatch of the colour that it is about.
struct ToastView {
    QString text;
    QString symbol;
    std::optional<QColor> swatch;

    /// Clear space around the card, which its shadow uses.
    static constexpr double margin = 10;
    static constexpr double cornerRadius = 24;

    /// The card's size for the whole message, without the margin.
    QSizeF size() const;

    /// Paints the card into `card`. A message that is too long for it is elided.
    void paint(QPainter& painter, const QRectF& card, const ThemeColors& colors,
               Translucency translucency = Translucency::translucent) const;
};

} // namespace quillet
