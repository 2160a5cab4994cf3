#include "app/look/GlassCard.h"

#include <QPainter>

namespace quillet {
namespace {

const QColor& materialColor(const ThemeColors& colors, Material material) {
    switch (material) {
    case Material::regular:
        return colors.material;
    case Material::thick:
        return colors.thickMaterial;
    case Material::frame:
        return colors.frameMaterial;
    }
    return colors.material;
}

} // namespace

QPainterPath continuousRect(const QRectF& rect, double cornerRadius) {
    QPainterPath path;
    const double shorter = std::min(rect.width(), rect.height());
    constexpr double smallestContinuous = 14;
    const double reach = 1.2 * cornerRadius;
    if (cornerRadius < smallestContinuous || 2 * reach > shorter) {
        const double radius = std::min(cornerRadius, shorter / 2);
        path.addRoundedRect(rect, radius, radius);
        return path;
    }
    const double near = 0.381 * cornerRadius;
    const double left = rect.left();
    const double top = rect.top();
    const double right = rect.right();
    const double bottom = rect.bottom();
    path.moveTo(left, top + reach);
    path.cubicTo(left, top + near, left + near, top, left + reach, top);
    path.lineTo(right - reach, top);
    path.cubicTo(right - near, top, right, top + near, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - near, right - near, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + near, bottom, left, bottom - near, left, bottom - reach);
    path.closeSubpath();
    return path;
}

void paintGlassCard(QPainter& painter, const QRectF& rect, double cornerRadius,
                    const ThemeColors& colors, Material material, Translucency translucency) {
    QColor ground = materialColor(colors, material);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (translucency == Translucency::opaque) {
        // The window is cut to shape, and a corner that the cut leaves must not stay unpainted.
        ground.setAlpha(255);
        painter.fillRect(rect, ground);
    } else {
        painter.fillPath(continuousRect(rect, cornerRadius), ground);
    }
    painter.setPen(QPen(colors.cardStroke, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(continuousRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5));
    painter.restore();
}

QRegion cardMask(const QRectF& rect, double cornerRadius) {
    return QRegion(continuousRect(rect, cornerRadius).toFillPolygon().toPolygon());
}

} // namespace quillet
