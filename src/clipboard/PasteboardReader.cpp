#include "clipboard/PasteboardReader.h"
#include "clipboard/ClipboardLog.h"
#include "clipboard/ClipboardPreferences.h"

#include <array>
#include <utility>

namespace quillet {

namespace {

using Outcome = PasteboardReading::Outcome;

struct Flavor {
    QString type;
    const PreferenceKey<int>& maxBytes;
    std::optional<Captured> (*digest)(const QByteArray& bytes);
};

/// In the order in which they are tried.
const std::array<Flavor, 4>& flavors() {
    static const std::array<Flavor, 4> table{{
        {PasteboardType::fileURL, ClipboardPreferences::maxTextBytes, Captured::fromUriList},
        {PasteboardType::png, ClipboardPreferences::maxImageBytes, Captured::fromPng},
        {PasteboardType::tiff, ClipboardPreferences::maxImageBytes, Captured::fromTiff},
        {PasteboardType::string, ClipboardPreferences::maxTextBytes, Captured::fromText},
    }};
    return table;
}

} // namespace

PasteboardReader::PasteboardReader(Pasteboard& pasteboard, const Preferences& preferences,
                                   Scheduler& scheduler)
    : m_pasteboard(pasteboard), m_preferences(preferences), m_scheduler(scheduler) {}

void PasteboardReader::read(Completion completion) {
    m_completion = std::move(completion);
    m_changeCount = m_pasteboard.changeCount();
    tryFlavor(0);
}

void PasteboardReader::tryFlavor(size_t index) {
    if (m_pasteboard.changeCount() != m_changeCount)
        return finish(std::nullopt); // what is there now is not what this reading is about
    const QStringList types = m_pasteboard.types();
    while (index < flavors().size() && !types.contains(flavors()[index].type))
        ++index;
    if (index == flavors().size())
        return finish(std::nullopt);

    const Flavor& flavor = flavors()[index];
    const auto take = [this, index](PasteboardReading reading) {
        switch (reading.outcome) {
        case Outcome::data:
            return digest(index, std::move(reading.bytes));
        case Outcome::absent:
            return tryFlavor(index + 1);
        case Outcome::tooLarge:
            qCWarning(logClipboard) << "A copy was too large to record.";
            return finish(std::nullopt);
        case Outcome::timedOut:
            qCWarning(logClipboard) << "A copy was not delivered in time and is not recorded.";
            return finish(std::nullopt);
        case Outcome::cancelled:
            return finish(std::nullopt);
        }
    };
    m_pasteboard.read(flavor.type, m_preferences.value(flavor.maxBytes), m_alive(take));
}

void PasteboardReader::digest(size_t index, QByteArray bytes) {
    constexpr qsizetype quicklyDigested = 64 * 1024;
    const auto digestOf = flavors()[index].digest;
    if (bytes.size() <= quicklyDigested)
        return finishFlavor(index, digestOf(bytes));
    const auto captured = std::make_shared<std::optional<Captured>>();
    m_scheduler.background(
        [=, bytes = std::move(bytes)]() mutable {
            *captured = digestOf(bytes);
            bytes.clear();
        },
        m_alive([=, this] { finishFlavor(index, std::move(*captured)); }));
}

void PasteboardReader::finishFlavor(size_t index, std::optional<Captured> captured) {
    if (captured)
        finish(std::move(captured));
    else
        tryFlavor(index + 1);
}

void PasteboardReader::finish(std::optional<Captured> captured) {
    std::exchange(m_completion, nullptr)(std::move(captured));
}

} // namespace quillet
