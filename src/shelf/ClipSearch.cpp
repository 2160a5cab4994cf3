#include "shelf/ClipSearch.h"

#include <algorithm>
#include <cstring>
#include <QLocale>

namespace quillet {

namespace {

constexpr qsizetype longTextsKept = 64 << 20;
constexpr qint64 readAtOnce = 16 << 20;

} // namespace

ClipSearch::ClipSearch(Scheduler& scheduler) : m_scheduler(scheduler), m_long(longTextsKept) {}

QByteArray ClipSearch::comparable(const QString& text) {
    // Capitals in the locale's way: they are what ß and SS share, both small sigmas have the same
    // one, and in Turkish that of i is not I. Accents count, so a letter with its accent must be
    // one character however the text spells it.
    return QLocale().toUpper(text.normalized(QString::NormalizationForm_C)).toUtf8();
}

void ClipSearch::prepare(const ClipItems& items) {
    QHash<QUuid, QByteArray> kept;
    kept.reserve(static_cast<qsizetype>(items.size()));
    std::vector<ClipItem> missing; // copies, because the items themselves may change meanwhile
    for (const auto& item : items) {
        const auto known = m_short.constFind(item->id());
        if (known != m_short.cend())
            kept.insert(item->id(), known.value());
        else if (item->longTextBytes() == 0)
            missing.push_back(*item);
    }
    m_short = std::move(kept);
    if (missing.empty())
        return;
    const auto prepared = std::make_shared<QHash<QUuid, QByteArray>>();
    const auto work = [prepared, missing = std::move(missing)] {
        for (const ClipItem& item : missing)
            prepared->insert(item.id(), comparable(item.searchText()));
    };
    m_scheduler.background(work, m_alive([this, prepared] { m_short.insert(*prepared); }));
}

void ClipSearch::setNeedle(const QString& needle) {
    m_needle = comparable(needle);
    m_verdicts.clear();
    m_pending.clear();
}

bool ClipSearch::contains(const QByteArray& comparableText) const {
    // The C library's search does ten megabytes in a few milliseconds whatever the needle; the
    // toolkit's takes many times that for short ones.
    return ::memmem(comparableText.data(), static_cast<size_t>(comparableText.size()),
                    m_needle.data(), static_cast<size_t>(m_needle.size())) != nullptr;
}

bool ClipSearch::matches(const std::shared_ptr<ClipItem>& item) {
    if (item->longTextBytes() > 0)
        return matchesLong(item);
    auto text = m_short.constFind(item->id());
    if (text == m_short.cend())
        text = m_short.insert(item->id(), comparable(item->searchText()));
    return contains(text.value());
}

bool ClipSearch::matchesLong(const std::shared_ptr<ClipItem>& item) {
    const auto verdict = m_verdicts.constFind(item->id());
    if (verdict != m_verdicts.cend())
        return verdict.value();
    if (const QByteArray* text = m_long.object(item->id()))
        return m_verdicts.insert(item->id(), contains(*text)).value();
    if (std::ranges::find(m_pending, item) == m_pending.end())
        m_pending.push_back(item);
    if (!m_isReading)
        readPending();
    return false;
}

void ClipSearch::readPending() {
    m_isReading = !m_pending.empty();
    if (!m_isReading)
        return;
    // Copies, because the items themselves may change while they are read.
    struct Reading {
        std::vector<ClipItem> items;
        std::vector<QByteArray> texts;
    };
    const auto reading = std::make_shared<Reading>();
    qint64 bytes = 0;
    auto rest = m_pending.begin();
    for (; rest != m_pending.end() && bytes < readAtOnce; ++rest) {
        bytes += (*rest)->longTextBytes();
        reading->items.push_back(**rest);
    }
    m_pending.erase(m_pending.begin(), rest);
    const auto work = [reading] {
        for (const ClipItem& item : reading->items)
            reading->texts.push_back(comparable(item.searchText()));
    };
    const auto done = [this, reading] {
        bool hasFound = false;
        for (size_t i = 0; i < reading->items.size(); ++i) {
            const QUuid& id = reading->items[i].id();
            auto text = std::make_unique<QByteArray>(std::move(reading->texts[i]));
            const bool isMatch = contains(*text);
            m_verdicts.insert(id, isMatch);
            hasFound |= isMatch;
            const qsizetype size = text->size();
            m_long.insert(id, text.release(), size);
        }
        // The needle may have changed meanwhile, so that these texts were asked for again.
        std::erase_if(m_pending,
                      [this](const auto& item) { return m_verdicts.contains(item->id()); });
        readPending();
        if ((hasFound || isComplete()) && onProgress)
            onProgress();
    };
    m_scheduler.background(work, m_reading(done));
}

void ClipSearch::release() {
    m_reading = {};
    m_isReading = false;
    m_long.clear();
    m_pending.clear();
}

} // namespace quillet
