#include "platform/memory/MemoryHotKeys.h"

namespace quillet {

namespace {

constexpr uint32_t lastKeyCode = 127;

} // namespace

class MemoryHotKeys::Entry : public Registration {
public:
    Entry(std::shared_ptr<Entries> all, Combination pressed, uint32_t reported)
        : combination(pressed), id(reported), m_entries(std::move(all)) {
        m_entries->push_back(this);
    }
    ~Entry() override { std::erase(*m_entries, this); }

    const Combination combination;
    const uint32_t id;

private:
    std::shared_ptr<Entries> m_entries;
};

std::unique_ptr<HotKeyService::Registration> MemoryHotKeys::add(uint32_t keyCode,
                                                                uint32_t modifiers, uint32_t id) {
    const Combination combination{keyCode, modifiers};
    if (keyCode > lastKeyCode || taken.contains(combination))
        return nullptr;
    return std::make_unique<Entry>(m_entries, combination, id);
}

bool MemoryHotKeys::press(Combination combination) {
    bool isShortcut = false;
    for (const Entry* entry : *m_entries) {
        if (entry->combination != combination)
            continue;
        isShortcut = true;
        m_reports.push_back(m_scheduler.after(Scheduler::Duration(0), [this, id = entry->id] {
            if (onPressed)
                onPressed(id);
        }));
    }
    return isShortcut;
}

std::vector<uint32_t> MemoryHotKeys::registered() const {
    std::vector<uint32_t> ids;
    for (const Entry* entry : *m_entries)
        ids.push_back(entry->id);
    return ids;
}

} // namespace quillet
