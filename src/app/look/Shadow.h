#pragma once

#include "app/look/Theme.h"

class QPainter;

namespace quillet {

/// One soft shadow: a blur of this standard deviation, moved down, of a colour at this opacity.
struct ShadowLayer {
    double radius = 0;
    double offsetY = 0;
    double opacity = 0;
    QColor tint = Qt::black;
};

/// Paints the shadow that a rounded rectangle casts, from a nine-patch drawn once for each radius,
/// corner and tint: an opacity can change from frame to frame, a radius should not.
void paintShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                 const ShadowLayer& layer);

/// What large panels, menus and pins cast, with the hairline around them. Reaches 48 points out.
void paintPanelShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                      const ThemeColors& colors);

/// What toasts and tooltips cast; fades out within 10 points.
void paintToastShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                      const ThemeColors& colors);

} // namespace quillet
