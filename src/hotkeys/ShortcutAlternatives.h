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

    ShortcutAlternatives(HotKeyCenter& center, Preferences& preferences)
        : m_center(center), m_preferences(preferences) {}

    /// The shortcuts that are refused now, in the order of the actions.
    std::vector<Refusal> refusals() const;

    /// Whether the user has not been told of all of them.
    bool isNews() const;
    void noteTold();

    /// Puts every alternative in force.
    void accept();

private:
    HotKeyCenter& m_center;
    Preferences& m_preferences;
};

} // namespace quillet
