#include "shelf/ui/ClipCardLook.h"
#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"
#include "app/look/Symbols.h"
#include "app/look/Text.h"

#include <algorithm>
#include <cmath>
#include <QCoreApplication>
#include <QLinearGradient>
#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr double bandHeight = 50;
constexpr double padding = 12;
constexpr double footerHeight = 14;
constexpr double footerBottom = 8;
constexpr int textLines = 9;

constexpr TextStyle labelStyle{13, 18, QFont::DemiBold, -0.05};
constexpr TextStyle dateStyle{10.5, 14, QFont::Normal, 0};
constexpr TextStyle badgeStyle{11, 14, QFont::DemiBold, 0.5};
constexpr TextStyle clipStyle{12.5, 15.5, QFont::Normal, -0.05};

double luminance(const QColor& color) {
    const auto linear = [](double c) {
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

QColor darker(const QColor& color, double factor) {
    const auto channel = [factor](int c) { return static_cast<int>(std::lround(c * factor)); };
    return QColor(channel(color.red()), channel(color.green()), channel(color.blue()));
}

QRectF previewBox(double inset) {
    const double footerTop = ClipCardLook::size.height() - footerBottom - footerHeight;
    return {inset, bandHeight + inset, ClipCardLook::size.width() - 2 * inset,
            footerTop - inset - (bandHeight + inset)};
}

/// The image scaled beforehand where it has to shrink: the painter's own filter skips pixels.
void paintFitted(QPainter& painter, const QRectF& rect, const QImage& image) {
    const double scale = painter.deviceTransform().m11();
    const QSize pixels = (rect.size() * scale).toSize();
    const bool isShrinking = image.width() > pixels.width();
    painter.drawImage(
        rect, isShrinking ? image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                          : image);
}

QRectF centredIn(const QRectF& box, const QSizeF& size) {
    QRectF rect(QPointF(), size);
    rect.moveCenter(box.center());
    return rect;
}

void paintIcon(QPainter& painter, const QRectF& box, const QImage& icon) {
    paintFitted(painter,
                centredIn(box, QSizeF(icon.size()).scaled(box.size(), Qt::KeepAspectRatio)), icon);
}

void paintBadge(QPainter& painter, const QRectF& badge, const QString& text) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(withAlpha(Qt::white, 0.2));
    painter.drawRoundedRect(badge, 6, 6);
    paintText(painter, badge, Qt::AlignCenter, text, badgeStyle, Qt::white);
}

void paintBand(QPainter& painter, const ClipCardLook& look) {
    const QRectF band(0, 0, ClipCardLook::size.width(), bandHeight);
    const QColor color = clipCardBandColor(look.tint);
    QLinearGradient gradient(band.topLeft(), band.bottomRight());
    gradient.setColorAt(0, color);
    gradient.setColorAt(1, darker(color, 0.84));
    painter.fillRect(band, gradient);

    double left = padding;
    if (look.icon) {
        paintIcon(painter, {left, 10, 30, 30}, *look.icon);
        left += 30 + 8;
    }
    double right = band.right() - padding;
    if (!look.badge.isEmpty()) {
        const double width = textWidth(look.badge, badgeStyle) + 10;
        paintBadge(painter, {right - width, 16, width, 18}, look.badge);
        right -= width + 6;
    }
    if (look.isPinned) {
        paintSymbol(painter, {right - 12, 19, 12, 12}, u"pin.fill"_s, 11, Qt::white);
        right -= 12 + 6;
    }
    paintText(painter, {left, 0, right - left, bandHeight}, Qt::AlignLeft | Qt::AlignVCenter,
              look.label, labelStyle, Qt::white);
    left += textWidth(look.label, labelStyle) + 5;
    paintText(painter, {left, 0, right - left, bandHeight}, Qt::AlignLeft | Qt::AlignVCenter,
              elidedText(look.date, dateStyle, right - left), dateStyle, Qt::white);
}

void paintClip(QPainter& painter, const ClipCardLook& look, const ThemeColors& colors) {
    const QRectF box = previewBox(padding);
    const TextStyle style = clipStyle.verbatim();
    const QStringList lines = wrappedText(look.text, style, box.width(), textLines);
    paintLines(painter, box, Qt::AlignLeft, lines, style, colors.primary);
}

void paintLink(QPainter& painter, const ClipCardLook& look, const ThemeColors& colors) {
    const QRectF box = previewBox(padding);
    const TextStyle hostStyle = labelStyle.verbatim();
    const TextStyle linkStyle = TextStyles::subheadline.verbatim();
    paintText(painter, {box.topLeft(), QSizeF(box.width(), 18)}, Qt::AlignLeft | Qt::AlignVCenter,
              elidedText(look.host, hostStyle, box.width()), hostStyle, colors.primary);
    const QRectF rest = box.adjusted(0, look.host.isEmpty() ? 0 : 22, 0, 0);
    const int room = static_cast<int>(rest.height() / linkStyle.lineHeight);
    paintLines(painter, rest, Qt::AlignLeft, wrappedText(look.text, linkStyle, rest.width(), room),
               linkStyle, Theme::accent);
}

void paintColor(QPainter& painter, const ClipCardLook& look, const ThemeColors& colors) {
    const QRectF box = previewBox(padding);
    const QRectF swatch(box.topLeft(), QSizeF(box.width(), 90));
    painter.setBrush(look.swatch);
    painter.setPen(QPen(colors.cardStroke, 1));
    painter.drawRoundedRect(swatch.adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);
    const TextStyle style = TextStyles::body.weighing(QFont::Medium).verbatim();
    paintText(painter, {box.left(), swatch.bottom() + 10, box.width(), 18},
              Qt::AlignLeft | Qt::AlignVCenter, elidedText(look.text.trimmed(), style, box.width()),
              style, colors.primary);
}

void paintThumbnail(QPainter& painter, const QImage& image) {
    const QRectF box = previewBox(8);
    const QSizeF size = QSizeF(image.size()).scaled(box.size(), Qt::KeepAspectRatio);
    const QRectF rect = centredIn(box, size);
    painter.save();
    QPainterPath clip;
    clip.addRoundedRect(rect, 6, 6);
    painter.setClipPath(clip, Qt::IntersectClip);
    paintFitted(painter, rect, image);
    painter.restore();
}

void paintFiles(QPainter& painter, const ClipCardLook& look, const ThemeColors& colors) {
    const QRectF box = previewBox(padding);
    const TextStyle style = TextStyles::subheadline.verbatim();
    const double left = box.left() + 22 + 8;
    double top = box.top();
    for (const auto& file : look.files) {
        const QRectF iconBox(box.left(), top, 22, 22);
        if (file.icon.isNull())
            paintSymbol(painter, iconBox, u"doc"_s, 17, colors.secondary);
        else
            paintIcon(painter, iconBox, file.icon);
        paintText(painter, {left, top, box.right() - left, 22}, Qt::AlignLeft | Qt::AlignVCenter,
                  elidedText(file.name, style, box.right() - left, Qt::ElideMiddle), style,
                  colors.primary);
        top += 22 + 6;
    }
    if (look.furtherFiles > 0)
        paintText(painter, {left, top, box.right() - left, 14}, Qt::AlignLeft | Qt::AlignVCenter,
                  QCoreApplication::translate("ClipCard", "+%1 more").arg(look.furtherFiles),
                  TextStyles::caption, colors.secondary);
}

void paintPreview(QPainter& painter, const ClipCardLook& look, const ThemeColors& colors) {
    switch (look.kind) {
    case ClipItem::Kind::text:
        return paintClip(painter, look, colors);
    case ClipItem::Kind::link:
        return paintLink(painter, look, colors);
    case ClipItem::Kind::color:
        return paintColor(painter, look, colors);
    case ClipItem::Kind::image:
        if (look.thumbnail)
            paintThumbnail(painter, *look.thumbnail);
        return;
    case ClipItem::Kind::file:
        return paintFiles(painter, look, colors);
    }
}

} // namespace

QColor clipCardBandColor(QColor tint) {
    while (1.05 / (luminance(tint) + 0.05) < 4.5)
        tint = darker(tint, 0.98);
    return tint;
}

QRectF clipCardFrame(const QRectF& place, double selection) {
    const double scale = 0.97 + 0.03 * selection;
    return centredIn(place, place.size() * scale);
}

void paintClipCardShadow(QPainter& painter, const QRectF& place, double selection) {
    const double share = std::clamp(selection, 0.0, 1.0);
    const QRectF frame = clipCardFrame(place, selection);
    // Two fixed shadows that fade into each other: a blur of a radius in between would have to be
    // made anew for every frame of the change.
    if (share < 1)
        paintShadow(painter, frame, ClipCardLook::cornerRadius, {4, 3, 0.10 * (1 - share)});
    if (share > 0)
        paintShadow(painter, frame, ClipCardLook::cornerRadius, {10, 3, 0.25 * share});
}

void paintClipCard(QPainter& painter, const QRectF& place, const ClipCardLook& look,
                   const ThemeColors& colors) {
    const QRectF frame = clipCardFrame(place, look.selection);
    const QRectF card(QPointF(), ClipCardLook::size);
    const QPainterPath outline = continuousRect(card, ClipCardLook::cornerRadius);
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(frame.topLeft());
    painter.scale(frame.width() / card.width(), frame.height() / card.height());

    painter.fillPath(outline, colors.textBackground);
    painter.save();
    painter.setClipPath(outline);
    paintBand(painter, look);
    paintPreview(painter, look, colors);
    painter.restore();
    const double footerTop = card.height() - footerBottom - footerHeight;
    paintText(painter, {padding, footerTop, card.width() - 2 * padding, footerHeight},
              Qt::AlignLeft | Qt::AlignVCenter, look.footer, TextStyles::cardFooter,
              colors.secondary);

    const double share = std::clamp(look.selection, 0.0, 1.0);
    const double width = 1 + 2 * share;
    const QRectF edge = card.adjusted(width / 2, width / 2, -width / 2, -width / 2);
    painter.strokePath(continuousRect(edge, ClipCardLook::cornerRadius - width / 2),
                       QPen(mixed(colors.cardStroke, Theme::accent, share), width));
    painter.restore();
}

} // namespace quillet
