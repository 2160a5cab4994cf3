#include "app/look/Text.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

/// The toolkit rounds font sizes to whole pixels, so texts are measured and set at twice their
/// size and painted at half scale: sizes that end in a half hold.
constexpr double oversize = 2;

/// Characters that need no shaping to be set rightly.
bool isLatin(QStringView text) {
    return std::ranges::all_of(text, [](QChar character) {
        const char16_t code = character.unicode();
        return code < 0x250 || (code >= 0x2010 && code <= 0x2027) || code == 0x20AC;
    });
}

QStringList families(TextStyle::Face face) {
    switch (face) {
    case TextStyle::Face::text:
        return {u"Inter"_s, u"DejaVu Sans"_s};
    case TextStyle::Face::display:
        return {u"Inter Display"_s, u"Inter"_s, u"DejaVu Sans"_s};
    case TextStyle::Face::rounded:
        return {u"Quicksand"_s, u"Inter"_s, u"DejaVu Sans"_s};
    }
    return {};
}

bool isShaped(const TextStyle& style, QStringView text) {
    return !style.isVerbatim || !isLatin(text);
}

QFont makeFont(const TextStyle& style, double scale, bool withShaping) {
    QFont font(families(style.face));
    font.setPixelSize(static_cast<int>(std::lround(style.size * scale)));
    font.setWeight(style.weight);
    font.setLetterSpacing(QFont::AbsoluteSpacing, style.tracking * scale);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(
        withShaping ? QFont::PreferAntialias
                    : QFont::StyleStrategy(QFont::PreferAntialias | QFont::PreferNoShaping));
    return font;
}

const QFont& fontFor(const TextStyle& style, QStringView text) {
    const bool withShaping = isShaped(style, text);
    const auto key =
        std::make_tuple(style.size, style.weight, style.tracking, style.face, withShaping);
    static std::map<decltype(key), QFont> fonts;
    const auto found = fonts.find(key);
    if (found != fonts.end())
        return found->second;
    return fonts.emplace(key, makeFont(style, oversize, withShaping)).first->second;
}

/// The width of the cell that every digit is given, at the font's size.
double digitCell(const QFontMetricsF& metrics) {
    double widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

/// Calls `place(character, x)` for every character with digits centred in equal cells; the width.
template<typename Place>
double layTabular(const QString& text, const QFont& font, Place place) {
    const QFontMetricsF metrics(font);
    const double cell = digitCell(metrics);
    double x = 0;
    for (const QChar character : text) {
        const double advance = metrics.horizontalAdvance(character);
        const double width = character.isDigit() ? cell : advance;
        place(QString(character), x + (width - advance) / 2);
        x += width;
    }
    return x;
}

/// A part of `text` that is sure to fill `room` points, so that no one measures megabytes.
QString longestUseful(const QString& text, double room, Qt::TextElideMode mode) {
    const auto limit = static_cast<qsizetype>(room) * 2 + 64;
    if (text.size() <= 2 * limit)
        return text;
    return mode == Qt::ElideMiddle ? text.left(limit) + text.right(limit) : text.left(limit);
}

/// The lines of a layout, with whether text is left over behind them.
struct Breaking {
    QStringList lines;
    QString rest; ///< what follows the start of the last line
    bool isWhole = true;
};

Breaking breakLines(QString text, const TextStyle& style, double width, int maxLines) {
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    text.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(text, fontFor(style, text));
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    Breaking breaking;
    qsizetype end = 0;
    while (breaking.lines.size() < maxLines) {
        QTextLine line = layout.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width * oversize);
        const qsizetype start = line.textStart();
        end = start + line.textLength();
        breaking.rest = text.mid(start);
        QString content = text.mid(start, line.textLength());
        while (content.endsWith(QChar::LineSeparator) || content.endsWith(u' '))
            content.chop(1);
        breaking.lines.append(content);
    }
    layout.endLayout();
    breaking.isWhole = end >= text.size();
    return breaking;
}

} // namespace

TextStyle TextStyle::weighing(QFont::Weight other) const {
    TextStyle style = *this;
    style.weight = other;
    return style;
}

TextStyle TextStyle::tabular() const {
    TextStyle style = *this;
    style.hasTabularDigits = true;
    return style;
}

TextStyle TextStyle::verbatim() const {
    TextStyle style = *this;
    style.isVerbatim = true;
    return style;
}

TextStyle TextStyle::forShortcut() const {
    TextStyle style = *this;
    style.tracking += 0.5;
    return style;
}

double textWidth(const QString& text, const TextStyle& style) {
    const QFont& font = fontFor(style, text);
    const double width = style.hasTabularDigits
                             ? layTabular(text, font, [](const QString&, double) {})
                             : QFontMetricsF(font).horizontalAdvance(text);
    return width / oversize;
}

void paintText(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text,
               const TextStyle& style, const QColor& color) {
    const QFont& font = fontFor(style, text);
    const QFontMetricsF metrics(font);
    double left = rect.left();
    if (alignment & Qt::AlignRight)
        left = rect.right() - textWidth(text, style);
    else if (alignment & Qt::AlignHCenter)
        left = rect.center().x() - textWidth(text, style) / 2;
    double top = rect.top();
    if (alignment & Qt::AlignBottom)
        top = rect.bottom() - style.lineHeight;
    else if (alignment & Qt::AlignVCenter)
        top = rect.center().y() - style.lineHeight / 2;
    const double glyphs = (metrics.ascent() + metrics.descent()) / oversize;
    const double baseline = top + (style.lineHeight - glyphs) / 2 + metrics.ascent() / oversize;

    painter.save();
    painter.translate(left, baseline);
    painter.scale(1 / oversize, 1 / oversize);
    painter.setFont(font);
    painter.setPen(color);
    if (style.hasTabularDigits) {
        layTabular(text, font, [&painter](const QString& character, double x) {
            painter.drawText(QPointF(x, 0), character);
        });
    } else {
        painter.drawText(QPointF(0, 0), text);
    }
    painter.restore();
}

void paintLines(QPainter& painter, const QRectF& rect, Qt::Alignment alignment,
                const QStringList& lines, const TextStyle& style, const QColor& color) {
    QRectF line(rect.left(), rect.top(), rect.width(), style.lineHeight);
    for (const QString& text : lines) {
        paintText(painter, line, alignment, text, style, color);
        line.translate(0, style.lineHeight);
    }
}

QString elidedText(const QString& text, const TextStyle& style, double width,
                   Qt::TextElideMode mode) {
    const QString useful = longestUseful(text, width, mode);
    const QFontMetricsF metrics(fontFor(style, useful));
    return metrics.elidedText(useful, mode, width * oversize);
}

QStringList wrappedText(const QString& text, const TextStyle& style, double width, int maxLines) {
    Breaking breaking =
        breakLines(longestUseful(text, width * maxLines, Qt::ElideRight), style, width, maxLines);
    if (breaking.isWhole || breaking.lines.isEmpty())
        return breaking.lines;
    const qsizetype lineEnd = breaking.rest.indexOf(QChar::LineSeparator);
    const QString last = lineEnd < 0 ? breaking.rest : breaking.rest.left(lineEnd);
    breaking.lines.last() = elidedText(last + u'…', style, width);
    return breaking.lines;
}

QStringList balancedText(const QString& text, const TextStyle& style, double width) {
    constexpr int anyNumber = 1000;
    const QStringList lines = breakLines(text, style, width, anyNumber).lines;
    QStringList best = lines;
    double tooNarrow = 0;
    double enough = width;
    while (enough - tooNarrow > 1) {
        const double middle = (tooNarrow + enough) / 2;
        QStringList tried = breakLines(text, style, middle, anyNumber).lines;
        if (tried.size() > lines.size()) {
            tooNarrow = middle;
        } else {
            enough = middle;
            best = std::move(tried);
        }
    }
    return best;
}

QFont widgetFont(const TextStyle& style, QStringView text) {
    return makeFont(style, 1, isShaped(style, text));
}

} // namespace quillet
