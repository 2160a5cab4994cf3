#pragma once

#include "app/look/Theme.h"

#include <QSizeF>
#include <QString>

class QPainter;

namespace quillet {

enum class FieldShape { rounded, capsule };

/// The ground of a text field; the text is the toolkit's.
void paintField(QPainter& painter, const QRectF& rect, FieldShape shape, const ThemeColors& colors);

/// The magnifying glass at the start of a search field.
void paintSearchSymbol(QPainter& painter, const QRectF& field, const ThemeColors& colors);

/// The mark where the next character goes, of the height of `line` and at its left.
void paintCaret(QPainter& painter, const QRectF& line);

/// A word of help beside the pointer; `rect` is without its shadow.
inline constexpr double tooltipRadius = 6;
QSizeF tooltipSize(const QString& text);
void paintTooltip(QPainter& painter, const QRectF& rect, const QString& text,
                  const ThemeColors& colors);

} // namespace quillet
