#pragma once

#include <QFont>
#include <QRectF>
#include <QStringList>

class QPainter;
class QColor;

namespace quillet {

/// How a text is set. Sizes are in points of the desktop and may end in a half.
struct TextStyle {
    enum class Face { text, display, rounded };

    double size = 13;
    double lineHeight = 18;
    QFont::Weight weight = QFont::Normal;
    double tracking = 0;
    Face face = Face::text;
    bool hasTabularDigits = false; ///< digits that change in place keep their places
    bool isVerbatim = false;       ///< text of the user's: no ligature may alter what was copied

    TextStyle weighing(QFont::Weight other) const;
    TextStyle tabular() const;
    TextStyle verbatim() const;

    /// With the wider spacing of keyboard shortcuts.
    TextStyle forShortcut() const;
};

/// The styles of the look, by name.
namespace TextStyles {
inline constexpr TextStyle display{26, 32, QFont::Bold, -0.42, TextStyle::Face::display};
inline constexpr TextStyle title3{16, 22, QFont::DemiBold, -0.18};
inline constexpr TextStyle statValue{15, 20, QFont::DemiBold, -0.18};
inline constexpr TextStyle headline{13.5, 18, QFont::DemiBold, -0.08};
inline constexpr TextStyle toast{13.5, 22, QFont::DemiBold, -0.08};
inline constexpr TextStyle body{13, 18, QFont::Normal, -0.05};
inline constexpr TextStyle callout{12.5, 17, QFont::Normal, -0.05};
inline constexpr TextStyle subheadline{12, 16, QFont::Normal, -0.05};
inline constexpr TextStyle caption{11, 14, QFont::Normal, 0};
inline constexpr TextStyle cardFooter{10.5, 14, QFont::Medium, 0};
} // namespace TextStyles

/// The width of one line in points.
double textWidth(const QString& text, const TextStyle& style);

/// Paints one line; the line box is aligned in `rect` and never clipped by it.
void paintText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text,
               const TextStyle& style, const QColor& color);

/// Paints lines one below the other, the first at the top of `rect`.
void paintLines(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                const QStringList& lines, const TextStyle& style, const QColor& color);

/// The text, or as much of it as fits with "…" at the place of the rest.
QString elidedText(const QString& text, const TextStyle& style, double width,
                   Qt::TextElideMode mode = Qt::ElideRight);

/// Breaks text at words, or inside a word that is wider than a line, and at its own line ends. The
/// last of `maxLines` is elided where there is more. Costs by what is shown, not by the length.
QStringList wrappedText(const QString& text, const TextStyle& style, double width, int maxLines);

/// Breaks our own text into as few lines as `width` allows, all of about the same length.
QStringList balancedText(const QString& text, const TextStyle& style, double width);

/// The font of a style, for widgets of the toolkit that set `text` themselves. Its size is rounded.
QFont widgetFont(const TextStyle& style, QStringView text);

} // namespace quillet
