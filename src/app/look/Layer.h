#pragma once

#include <QImage>
#include <QPainter>

namespace quillet {

/// Paints something as a whole at an opacity, so that what lies under its upper parts does not show
/// through them. `reach` is how far it paints beyond `rect`.
template<typename Paint>
void paintFaded(QPainter& painter, const QRectF& rect, double opacity, Paint paint,
                double reach = 4) {
    if (opacity >= 1) {
        paint(painter);
        return;
    }
    const double scale = painter.device()->devicePixelRatioF();
    const QRectF area = rect.adjusted(-reach, -reach, reach, reach).toAlignedRect();
    QImage image((area.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(scale);
    image.fill(Qt::transparent);
    QPainter layer(&image);
    layer.translate(-area.topLeft());
    paint(layer);
    layer.end();
    painter.save();
    painter.setOpacity(painter.opacity() * opacity);
    painter.drawImage(area.topLeft(), image);
    painter.restore();
}

} // namespace quillet
