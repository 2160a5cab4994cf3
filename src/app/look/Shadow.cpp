#include "app/look/Shadow.h"
#include "app/look/GlassCard.h"

#include <cmath>
#include <map>
#include <QImage>
#include <QPainter>
#include <vector>

namespace quillet {
namespace {

constexpr double hairline = 0.5;
/// A blur ends, to the eye, at this many standard deviations.
constexpr double reach = 3;
/// Wider blurs are worked out at a coarser scale, which nobody can see.
constexpr double widestKernel = 6;

std::vector<float> gaussian(double sigma) {
    const int half = static_cast<int>(std::ceil(reach * sigma));
    std::vector<float> kernel;
    float sum = 0;
    for (int i = -half; i <= half; ++i) {
        kernel.push_back(static_cast<float>(std::exp(-i * i / (2 * sigma * sigma))));
        sum += kernel.back();
    }
    for (float& weight : kernel)
        weight /= sum;
    return kernel;
}

/// Blurs the rows of an 8-bit image and turns it on its side; twice makes the whole blur.
QImage blurredAcross(const QImage& source, const std::vector<float>& kernel) {
    QImage result(source.height(), source.width(), QImage::Format_Alpha8);
    const int half = static_cast<int>(kernel.size()) / 2;
    for (int y = 0; y < source.height(); ++y) {
        const uchar* row = source.constScanLine(y);
        for (int x = 0; x < source.width(); ++x) {
            float sum = 0;
            const int first = std::max(0, x - half);
            const int last = std::min(source.width() - 1, x + half);
            for (int i = first; i <= last; ++i)
                sum += static_cast<float>(row[i]) * kernel[static_cast<size_t>(i - x + half)];
            result.scanLine(x)[y] = static_cast<uchar>(std::lround(sum));
        }
    }
    return result;
}

/// The shadow of a rounded rectangle of `size` with the blur's reach around it, in pixels of
/// `scale`.
QImage blurredRect(const QSizeF& size, double corner, const ShadowLayer& layer, double scale) {
    const double margin = reach * layer.radius;
    const double coarse = std::min(scale, widestKernel / layer.radius);
    const QSizeF whole(size.width() + 2 * margin, size.height() + 2 * margin);
    QImage shape((whole * coarse).toSize(), QImage::Format_ARGB32_Premultiplied);
    shape.fill(Qt::transparent);
    QPainter painter(&shape);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(shape.width() / whole.width(), shape.height() / whole.height());
    painter.fillPath(continuousRect(QRectF({margin, margin}, size), corner), Qt::black);
    painter.end();
    const auto kernel = gaussian(layer.radius * coarse);
    shape.convertTo(QImage::Format_Alpha8);
    const QImage blurred = blurredAcross(blurredAcross(shape, kernel), kernel);
    QImage shadow =
        blurred.convertToFormat(QImage::Format_ARGB32_Premultiplied)
            .scaled((whole * scale).toSize(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QPainter tint(&shadow);
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(shadow.rect(), layer.tint);
    tint.end();
    return shadow;
}

/// The smallest rectangle whose shadow can be stretched to that of a rectangle of `size`.
QSizeF patchSize(const QSizeF& size, double corner, double radius) {
    const double fixed = std::ceil(2 * (1.2 * corner + reach * radius)) + 2;
    return {std::min(size.width(), fixed), std::min(size.height(), fixed)};
}

const QImage& patch(const QSizeF& size, double corner, const ShadowLayer& layer, double scale) {
    const auto key =
        std::make_tuple(size.width(), size.height(), corner, layer.radius, layer.tint.rgb(), scale);
    static std::map<decltype(key), QImage> patches;
    constexpr size_t enough = 64;
    if (patches.size() > enough)
        patches.clear();
    const auto found = patches.find(key);
    if (found != patches.end())
        return found->second;
    return patches.emplace(key, blurredRect(size, corner, layer, scale)).first->second;
}

void paintNinePatch(QPainter& painter, const QRectF& target, const QImage& image, double scale) {
    const int middleX = image.width() / 2;
    const int middleY = image.height() / 2;
    const int sourceX[] = {0, middleX, middleX + 1, image.width()};
    const int sourceY[] = {0, middleY, middleY + 1, image.height()};
    // Seams stay invisible only where the pieces meet at whole pixels.
    const auto snap = [scale](double value) { return std::round(value * scale) / scale; };
    const double left = snap(target.left());
    const double top = snap(target.top());
    const double right = snap(target.right());
    const double bottom = snap(target.bottom());
    const double targetX[] = {left, left + middleX / scale,
                              right - (image.width() - middleX - 1) / scale, right};
    const double targetY[] = {top, top + middleY / scale,
                              bottom - (image.height() - middleY - 1) / scale, bottom};
    for (size_t row = 0; row < 3; ++row) {
        for (size_t column = 0; column < 3; ++column) {
            const QRectF piece(QPointF(targetX[column], targetY[row]),
                               QPointF(targetX[column + 1], targetY[row + 1]));
            if (row == 1 && column == 1)
                painter.fillRect(piece, image.pixelColor(middleX, middleY)); // much the largest
            else
                painter.drawImage(piece, image,
                                  QRectF(QPointF(sourceX[column], sourceY[row]),
                                         QPointF(sourceX[column + 1], sourceY[row + 1])));
        }
    }
}

} // namespace

void paintShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                 const ShadowLayer& layer) {
    const double scale = painter.device()->devicePixelRatioF();
    const double margin = reach * layer.radius;
    const QImage& image =
        patch(patchSize(rect.size(), cornerRadius, layer.radius), cornerRadius, layer, scale);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setOpacity(painter.opacity() * layer.opacity);
    paintNinePatch(painter,
                   rect.adjusted(-margin, -margin, margin, margin).translated(0, layer.offsetY),
                   image, scale);
    painter.restore();
}

void paintPanelShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                      const ThemeColors& colors) {
    paintShadow(painter, rect, cornerRadius, {18, 12, colors.isDark() ? 0.48 : 0.20});
    paintShadow(painter, rect, cornerRadius, {4, 2, colors.isDark() ? 0.28 : 0.08});
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(withAlpha(Qt::black, colors.isDark() ? 0.60 : 0.10), hairline));
    painter.setBrush(Qt::NoBrush);
    constexpr double out = hairline / 2;
    painter.drawPath(continuousRect(rect.adjusted(-out, -out, out, out), cornerRadius + out));
    painter.restore();
}

void paintToastShadow(QPainter& painter, const QRectF& rect, double cornerRadius,
                      const ThemeColors& colors) {
    paintShadow(painter, rect, cornerRadius, {4, 2, colors.isDark() ? 0.40 : 0.14});
}

} // namespace quillet
