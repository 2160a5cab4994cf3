#pragma once

#include "clipboard/ClipItem.h"

#include <QCache>
#include <QImage>

namespace quillet {

/// Downscaled images of image items, kept until the item is deleted or until those used less
/// recently have to make room: it holds at most 64 MiB of pixels. Keyed by the item alone, so the
/// size asked for first is the one that stays.
class ThumbnailCache {
public:
    static ThumbnailCache& shared();

    ThumbnailCache();

    /// The item's image with its longer side at most `maxPixel`; absent for an item without an
    /// image that can be decoded.
    std::optional<QImage> thumbnail(const ClipItem& item, double maxPixel);

    /// The thumbnail if it is at hand.
    std::optional<QImage> cached(const ClipItem& item) const;

    /// Takes in a thumbnail that was made elsewhere.
    void keep(const ClipItem& item, const QImage& image);

    void drop(const ClipItem& item) { m_cache.remove(item.id()); }

private:
    QCache<QUuid, QImage> m_cache;
};

} // namespace quillet
