#pragma once

#include "clipboard/ThumbnailCache.h"
#include "platform/Alive.h"
#include "platform/Scheduler.h"

#include <QSize>

namespace quillet {

/// What a card shows of an item and what takes reading, counting or decoding to know.
struct ClipPreview {
    QString text;                ///< as much of its beginning as fits on a card
    qint64 characters = 0;       ///< of the whole text
    std::optional<QSize> pixels; ///< of the image; absent where it cannot be read
    std::optional<QImage> thumbnail;
};

/// Previews of clips. Long texts and images are read in the background, one at a time, which
/// leaves the processor to what moves on the screen, and without a queue: what is still on view
/// when one is ready asks again, what was scrolled past does not.
class ClipPreviews {
public:
    ClipPreviews(Scheduler& scheduler, ThumbnailCache& thumbnails);

    /// Absent while it is not ready.
    std::optional<ClipPreview> preview(const ClipItem& item);

    /// Called from the event loop when a preview that was asked for may be ready.
    std::function<void()> onReady;

private:
    struct Known {
        ClipPreview preview; ///< without the thumbnail
        bool hasThumbnail = false;
    };

    void load(const ClipItem& item);
    void keep(const ClipItem& item, ClipPreview preview);

    Scheduler& m_scheduler;
    ThumbnailCache& m_thumbnails;
    QCache<QUuid, Known> m_known;
    bool m_isLoading = false;
    Alive m_alive;
};

} // namespace quillet
