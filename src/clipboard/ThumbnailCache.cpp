#include "clipboard/ThumbnailCache.h"
#include "imaging/Bitmap.h"

namespace quillet {

ThumbnailCache& ThumbnailCache::shared() {
    static ThumbnailCache cache;
    return cache;
}

ThumbnailCache::ThumbnailCache() : m_cache(64 << 20) {}

std::optional<QImage> ThumbnailCache::thumbnail(const ClipItem& item, double maxPixel) {
    if (const QImage* cached = m_cache.object(item.id()))
        return *cached;
    const auto bytes = item.imageData();
    if (!bytes)
        return std::nullopt;
    const auto image = quillet::thumbnail(*bytes, maxPixel);
    if (image)
        m_cache.insert(item.id(), std::make_unique<QImage>(*image).release(), image->sizeInBytes());
    return image;
}

} // namespace quillet
