#pragma once

#include "app/look/Theme.h"

#include <QPainterPath>
#include <QRegion>

class QPainter;

namespace quillet {

/// A rounded rectangle whose corners run into its sides without a jump in curvature. Plain arcs
/// where the corners would meet.
QPainterPath continuousRect(const QRectF& rect, double cornerRadius);

/// How thick the stuff of a floating panel is.
enum class Material { regular, thick, frame };

enum class Translucency { translucent, opaque };

/// The ground of floating things: a material in a rounded rectangle with a hairline inside its
/// edge. Opaque where windows cannot be translucent.
void paintGlassCard(QPainter& painter, const QRectF& rect, double cornerRadius,
                    const ThemeColors& colors, Material material = Material::regular,
                    Translucency translucency = Translucency::translucent);

/// The pixels of a card, for a window that cannot be translucent.
QRegion cardMask(const QRectF& rect, double cornerRadius);

} // namespace quillet
