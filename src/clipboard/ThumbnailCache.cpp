#include "clipboard/ThumbnailCache.h"
#include "imaging/Bitmap.h"

namespace quillet {

ThumbnailCache& ThumbnailCache::shared() {
    static ThumbnailCache cache;
    return cache;
}

ThumbnailCache::ThumbnailCache() : m_cache(64 << 20) {}

std::optional<QImage> ThumbnailCache::thumbnail(const ClipItem& item, double maxPixel) {
    if (const auto image = cached(item))
        return image;
    const auto bytes = item.imageData();
    if (!bytes)
        return std::nullopt;
    const auto image = quillet::thumbnail(*bytes, maxPixel);
    if (image)
        keep(item, *image);
    return image;
}

std::optional<QImage> ThumbnailCache::cached(const ClipItem& item) const {
    const QImage* image = m_cache.object(item.id());
    return image ? std::optional(*image) : std::nullopt;
}

void ThumbnailCache::keep(const ClipItem& item, const QImage& image) {
    m_cache.insert(item.id(), std::make_unique<QImage>(image).release(), image.sizeInBytes());
}

} // namespace quillet
