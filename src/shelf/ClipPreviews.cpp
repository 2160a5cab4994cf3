#include "shelf/ClipPreviews.h"
#include "imaging/Bitmap.h"
#include "shelf/CardTexts.h"

namespace quillet {

namespace {

constexpr qsizetype previewsKept = 500;
constexpr double thumbnailPixels = 520;
constexpr qsizetype textShown = 2000;

QString beginning(const QString& text) {
    const bool splitsPair = text.size() > textShown && text[textShown - 1].isHighSurrogate();
    return text.left(splitsPair ? textShown - 1 : textShown);
}

ClipPreview readPreview(const ClipItem& item) {
    ClipPreview preview;
    if (const auto text = item.text()) {
        preview.text = beginning(*text);
        preview.characters = characterCount(*text);
    }
    if (const auto bytes = item.imageData()) {
        preview.pixels = imageSize(*bytes);
        preview.thumbnail = thumbnail(*bytes, thumbnailPixels);
    }
    return preview;
}

} // namespace

ClipPreviews::ClipPreviews(Scheduler& scheduler, ThumbnailCache& thumbnails)
    : m_scheduler(scheduler), m_thumbnails(thumbnails), m_known(previewsKept) {}

std::optional<ClipPreview> ClipPreviews::preview(const ClipItem& item) {
    const bool isAtHand = item.imageBytes() == 0 && item.longTextBytes() == 0;
    if (isAtHand && !m_known.contains(item.id()))
        keep(item, readPreview(item));
    const Known* known = m_known.object(item.id());
    std::optional<ClipPreview> preview;
    if (known) {
        preview = known->preview;
        preview->thumbnail = m_thumbnails.cached(item);
    }
    // A thumbnail may have had to make room for others since.
    const bool isComplete = known && (preview->thumbnail || !known->hasThumbnail);
    if (!isComplete && !m_isLoading)
        load(item);
    return preview;
}

void ClipPreviews::load(const ClipItem& item) {
    m_isLoading = true;
    const auto preview = std::make_shared<ClipPreview>();
    const auto work = [preview, item] { *preview = readPreview(item); };
    const auto done = [this, preview, item] {
        m_isLoading = false;
        keep(item, std::move(*preview));
        if (onReady)
            onReady();
    };
    m_scheduler.background(work, m_alive(done));
}

void ClipPreviews::keep(const ClipItem& item, ClipPreview preview) {
    const auto thumbnail = std::exchange(preview.thumbnail, std::nullopt);
    if (thumbnail)
        m_thumbnails.keep(item, *thumbnail);
    auto known = std::make_unique<Known>(Known{std::move(preview), thumbnail.has_value()});
    m_known.insert(item.id(), known.release());
}

} // namespace quillet
