#include "platform/memory/MemoryPasteboard.h"

#include <algorithm>
#include <utility>

namespace quillet {

void MemoryPasteboard::read(const QString& type, qint64 maxBytes, Completion completion) {
    m_typesRead.append(type);
    if (m_holding)
        m_pending.push_back({type, maxBytes, std::move(completion)});
    else
        completion(answer(type, maxBytes));
}

bool MemoryPasteboard::write(PasteboardContents contents) {
    if (m_grantsOwnership)
        replace(std::move(contents), Owner::us);
    else
        replace({}, Owner::none);
    return m_grantsOwnership;
}

bool MemoryPasteboard::keep(PasteboardContents contents) {
    if (m_owner != Owner::none || !m_grantsOwnership)
        return false;
    m_contents = std::move(contents);
    m_owner = Owner::us;
    return true;
}

void MemoryPasteboard::copyFrom(std::vector<Item> items) {
    PasteboardContents contents;
    for (Item& item : items)
        contents.push_back({item.type, [bytes = std::move(item.bytes)] { return bytes; }});
    replace(std::move(contents), Owner::other);
}

void MemoryPasteboard::copyText(const QString& text) {
    copyFrom({{PasteboardType::string, text.toUtf8()}});
}

void MemoryPasteboard::ownerQuits() {
    m_contents.clear();
    m_owner = Owner::none;
    releaseReads(); // nobody is left who could answer, so they end as absent
    if (onOwnerGone)
        onOwnerGone();
}

void MemoryPasteboard::releaseReads() {
    m_holding = false;
    for (const PendingRead& read : std::exchange(m_pending, {}))
        read.completion(answer(read.type, read.maxBytes));
}

std::optional<QByteArray> MemoryPasteboard::bytes(const QString& type) const {
    const auto content = std::find_if(m_contents.begin(), m_contents.end(),
                                      [&](const auto& entry) { return entry.type == type; });
    if (content == m_contents.end())
        return std::nullopt;
    return content->bytes();
}

QString MemoryPasteboard::text() const {
    const auto text = bytes(PasteboardType::string);
    return text ? QString::fromUtf8(*text) : QString();
}

void MemoryPasteboard::replace(PasteboardContents contents, Owner owner) {
    cancelReads();
    m_contents = std::move(contents);
    m_owner = owner;
    m_failures.clear();
    m_types.clear();
    for (const PasteboardContent& content : m_contents)
        m_types.append(content.type);
    ++m_changeCount;
    if (onChange)
        onChange();
}

void MemoryPasteboard::cancelReads() {
    for (const PendingRead& read : std::exchange(m_pending, {}))
        read.completion({Outcome::cancelled, {}});
}

PasteboardReading MemoryPasteboard::answer(const QString& type, qint64 maxBytes) const {
    if (const auto failure = m_failures.find(type); failure != m_failures.end())
        return {failure->second, {}};
    const auto content = bytes(type);
    if (!content || content->isNull())
        return {Outcome::absent, {}};
    if (content->size() > maxBytes)
        return {Outcome::tooLarge, {}};
    return {Outcome::data, *content};
}

} // namespace quillet
