#pragma once

#include "hotkeys/HotKeyCenter.h"

namespace quillet {

/// What to use in place of shortcuts that other programs have. Desktops keep Control+Alt with the
/// arrows for themselves, for one, so the same key with Option and Command is offered wherever that
/// is free. Remembers in the preferences which refusals the user has been told of.
class ShortcutAlternatives {
public:
    struct Refusal {
        HotKeyAction action;
        Shortcut shortcut;
        std::optional<Shortcut> alternative; ///< absent where that is taken, too
    };

    ShortcutAlternatives(HotKeyCenter& center, Preferences& preferences);

    /// The shortcuts that are refused now, in the order of the actions. Whether the alternatives
    /// are free is tried once, and again when anything changes among the shortcuts.
    const std::vector<Refusal>& refusals() const;

    /// Whether the user has not been told of all of them.
    bool isNews() const;
    void noteTold();

    /// Puts every alternative in force.
    void accept();

private:
    std::vector<Refusal> findRefusals() const;

    HotKeyCenter& m_center;
    Preferences& m_preferences;
    mutable std::optional<std::vector<Refusal>> m_refusals; ///< absent until somebody asks
    QObject m_listener;
};

} // namespace quillet
