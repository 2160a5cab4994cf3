#include "shelf/AppIconStore.h"

#include <algorithm>

namespace quillet {

namespace {

constexpr int iconPixels = 96;
constexpr int samples = 24;
constexpr QColor gray(142, 142, 147);

} // namespace

std::optional<QImage> AppIconStore::icon(const std::optional<QString>& bundleID) {
    if (!bundleID)
        return std::nullopt;
    const auto known = m_icons.find(*bundleID);
    if (known != m_icons.end())
        return known->second;
    const auto location = m_workspace.applicationLocation(*bundleID);
    if (!location)
        return std::nullopt;
    const QImage icon = m_workspace.icon(*location, iconPixels);
    if (icon.isNull())
        return std::nullopt;
    return m_icons.emplace(*bundleID, icon).first->second;
}

QColor AppIconStore::tint(const std::optional<QString>& bundleID) {
    if (!bundleID)
        return gray;
    const auto known = m_tints.find(*bundleID);
    if (known != m_tints.end())
        return known->second;
    const auto image = icon(bundleID);
    const auto color = image ? dominantColor(*image) : std::nullopt;
    return m_tints.emplace(*bundleID, color.value_or(gray)).first->second;
}

std::optional<QColor> dominantColor(const QImage& icon) {
    const QImage bitmap =
        icon.scaled(samples, samples, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
            .convertToFormat(QImage::Format_ARGB32);
    if (bitmap.isNull())
        return std::nullopt;

    // Saturated pixels weigh more, so that white or gray grounds do not wash the colour out.
    double red = 0, green = 0, blue = 0, total = 0;
    for (int x = 0; x < samples; ++x) {
        for (int y = 0; y < samples; ++y) {
            const QColor pixel = bitmap.pixelColor(x, y);
            if (pixel.alphaF() <= 0.5F)
                continue;
            const double weight = pixel.hsvSaturationF() + 0.05;
            red += weight * pixel.redF();
            green += weight * pixel.greenF();
            blue += weight * pixel.blueF();
            total += weight;
        }
    }
    if (total <= 0)
        return std::nullopt;

    const auto channel = [total](double sum) { return static_cast<float>(sum / total); };
    const QColor average = QColor::fromRgbF(channel(red), channel(green), channel(blue));
    // A gray has no hue; any will do, for its saturation is 0.
    const float hue = std::max(average.hsvHueF(), 0.0F);
    return QColor::fromHsvF(hue, std::min(average.hsvSaturationF() * 1.1F, 1.0F),
                            std::min(average.valueF(), 0.72F));
}

} // namespace quillet
