#pragma once

#include "platform/HotKeyService.h"
#include "platform/Scheduler.h"

#include <map>
#include <set>
#include <vector>

namespace quillet {

/// A keyboard that tests press. Registrations may outlive it.
class MemoryHotKeys : public HotKeyService {
public:
    struct Combination {
        uint32_t keyCode = 0;
        uint32_t modifiers = 0;
        auto operator<=>(const Combination&) const = default;
    };

    explicit MemoryHotKeys(Scheduler& scheduler) : m_scheduler(scheduler) {}

    std::unique_ptr<Registration> add(uint32_t keyCode, uint32_t modifiers, uint32_t id) override;

    char32_t symbol(uint32_t scanCode) const override;

    /// Presses a combination; whether it is a shortcut. It is reported at the next advance.
    bool press(Combination combination);

    /// Another keyboard layout, on which other programs have these combinations; told at the next
    /// advance.
    void changeKeyboard(std::set<Combination> takenThere);

    /// The ids that are registered, in the order of their registration.
    std::vector<uint32_t> registered() const;

    /// Combinations that other programs have.
    std::set<Combination> taken;

    /// What keys type, by scan code.
    std::map<uint32_t, char32_t> symbols;

private:
    class Entry;
    using Entries = std::vector<Entry*>;

    Scheduler& m_scheduler;
    std::shared_ptr<Entries> m_entries = std::make_shared<Entries>();
    std::vector<std::unique_ptr<Timer>> m_reports;
    std::unique_ptr<Timer> m_keyboardChange;
};

} // namespace quillet
