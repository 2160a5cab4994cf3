#include "platform/memory/MemoryHotKeys.h"

namespace quillet {

namespace {

constexpr uint32_t lastKeyCode = 127;

} // namespace

class MemoryHotKeys::Entry : public Registration {
public:
    Entry(const MemoryHotKeys& keys, Combination pressed, uint32_t reported)
        : combination(pressed), id(reported), m_keys(keys), m_entries(keys.m_entries) {
        m_entries->push_back(this);
    }
    ~Entry() override { std::erase(*m_entries, this); }

    bool isInForce() const override { return !m_keys.taken.contains(combination); }

    const Combination combination;
    const uint32_t id;

private:
    const MemoryHotKeys& m_keys;
    std::shared_ptr<Entries> m_entries;
};

std::unique_ptr<HotKeyService::Registration> MemoryHotKeys::add(uint32_t keyCode,
                                                                uint32_t modifiers, uint32_t id) {
    const Combination combination{keyCode, modifiers};
    if (keyCode > lastKeyCode || taken.contains(combination))
        return nullptr;
    return std::make_unique<Entry>(*this, combination, id);
}

char32_t MemoryHotKeys::symbol(uint32_t scanCode) const {
    const auto found = symbols.find(scanCode);
    return found == symbols.end() ? 0 : found->second;
}

bool MemoryHotKeys::press(Combination combination) {
    bool isShortcut = false;
    for (const Entry* entry : *m_entries) {
        if (entry->combination != combination || !entry->isInForce())
            continue;
        isShortcut = true;
        m_reports.push_back(m_scheduler.after(Scheduler::Duration(0), [this, id = entry->id] {
            if (onPressed)
                onPressed(id);
        }));
    }
    return isShortcut;
}

void MemoryHotKeys::changeKeyboard(std::set<Combination> takenThere) {
    taken = std::move(takenThere);
    m_keyboardChange = m_scheduler.after(Scheduler::Duration(0), [this] {
        if (onKeyboardChanged)
            onKeyboardChanged();
    });
}

std::vector<uint32_t> MemoryHotKeys::registered() const {
    std::vector<uint32_t> ids;
    for (const Entry* entry : *m_entries)
        ids.push_back(entry->id);
    return ids;
}

} // namespace quillet
