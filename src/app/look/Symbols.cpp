#include "app/look/Symbols.h"

#include <cmath>
#include <QFile>
#include <QHash>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgRenderer>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

/// Added to every stroke, in units of the grid of sixteen that all symbols are drawn on.
double extraStroke(SymbolWeight weight) {
    switch (weight) {
    case SymbolWeight::light:
    case SymbolWeight::regular:
        return 0;
    case SymbolWeight::semibold:
        return 0.35;
    case SymbolWeight::bold:
        return 0.7;
    }
    return 0;
}

/// Large symbols have a thin drawing of their own.
QString path(const QString& name, SymbolWeight weight) {
    const QString light = u":/symbols/"_s + name + u".light.svg"_s;
    if (weight == SymbolWeight::light && QFile::exists(light))
        return light;
    return u":/symbols/"_s + name + u".svg"_s;
}

QString thickened(QString svg, double extra) {
    static const QRegularExpression strokeWidth(u"stroke-width=\"([0-9.]+)\""_s);
    qsizetype from = 0;
    for (auto match = strokeWidth.match(svg); match.hasMatch();
         match = strokeWidth.match(svg, from)) {
        const QString width = QString::number(match.captured(1).toDouble() + extra);
        svg.replace(match.capturedStart(1), match.capturedLength(1), width);
        from = match.capturedStart(1) + width.size();
    }
    const qsizetype content = svg.indexOf(u'>', svg.indexOf("<svg"_L1)) + 1;
    svg.insert(svg.lastIndexOf("</svg>"_L1), u"</g>"_s);
    svg.insert(content,
               u"<g stroke=\"#000\" stroke-width=\"%1\" stroke-linejoin=\"round\">"_s.arg(extra));
    return svg;
}

/// Room around the drawing for strokes that thickening carries over its edge.
int strokeMargin(int pixels) {
    return (pixels + 15) / 16;
}

QImage render(const QString& name, int pixels, SymbolWeight weight) {
    QFile file(path(name, weight));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString svg = QString::fromUtf8(file.readAll()).replace("currentColor"_L1, "#000"_L1);
    if (const double extra = extraStroke(weight); extra > 0)
        svg = thickened(svg, extra);
    QSvgRenderer renderer(svg.toUtf8());
    const int margin = strokeMargin(pixels);
    QImage image(pixels + 2 * margin, pixels + 2 * margin, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, QRectF(margin, margin, pixels, pixels));
    return image;
}

/// Every symbol is drawn once for each size and weight.
QImage mask(const QString& name, int pixels, SymbolWeight weight) {
    static QHash<std::pair<QString, int>, QImage> masks;
    const auto key = std::make_pair(name, pixels * 4 + static_cast<int>(weight));
    const auto found = masks.constFind(key);
    return found != masks.constEnd() ? *found : *masks.insert(key, render(name, pixels, weight));
}

} // namespace

bool hasSymbol(const QString& name) {
    return QFile::exists(path(name, SymbolWeight::regular));
}

void paintSymbol(QPainter& painter, const QRectF& rect, const QString& name, double fontSize,
                 const QColor& color, SymbolWeight weight) {
    const double scale = painter.device()->devicePixelRatioF();
    const int pixels = static_cast<int>(std::ceil(symbolSide(fontSize) * scale));
    QImage image = mask(name, pixels, weight);
    if (image.isNull())
        return;
    QPainter tint(&image);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(image.rect(), color);
    tint.end();
    const double side = image.width() / scale;
    // At whole pixels, where lines are as sharp as they were drawn.
    const auto snap = [scale](double value) { return std::round(value * scale) / scale; };
    painter.drawImage(
        QRectF(snap(rect.center().x() - side / 2), snap(rect.center().y() - side / 2), side, side),
        image);
}

} // namespace quillet
