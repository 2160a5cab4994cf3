#pragma once

#include "hotkeys/HotKeyActions.h"
#include "platform/HotKeyService.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"

#include <functional>
#include <map>
#include <QObject>
#include <set>

namespace quillet {

/// Owns the system-wide shortcuts: the one in force for each action, what it does, and its
/// registration with the system. Shortcuts that the user chose are kept as data items under
/// "hotkey." and the action's number; a missing or unreadable one means the factory shortcut.
/// The only listener of its service. An action is never both registered and in failed().
class HotKeyCenter : public QObject {
    Q_OBJECT

public:
    using Action = HotKeyAction;
    using Group = HotKeyGroup;
    using Handler = std::function<void()>;

    HotKeyCenter(Preferences& preferences, HotKeyService& service, Scheduler& scheduler);
    ~HotKeyCenter() override;

    /// Attaches what the action does, replacing what it did, and registers its shortcut. The
    /// handler runs from the event loop after the key press was dealt with.
    void registerAction(Action action, Handler handler);

    void set(const Shortcut& shortcut, Action action);

    /// Restores every factory shortcut and registers all of them.
    void resetAll();

    /// Whether an action could have a shortcut: no other action has it, nor another program.
    bool isFree(const Shortcut& shortcut, Action action);

    /// Withdraws every registration; resume() registers the actions that have a handler again.
    void suspend();
    void resume();

    Shortcut shortcut(Action action) const { return m_shortcuts.at(action); }
    const std::map<Action, Shortcut>& shortcuts() const { return m_shortcuts; }

    /// Actions whose last registration failed, because another program has the combination. It is
    /// tried again when the keyboard layout changes.
    const std::set<Action>& failed() const { return m_failed; }
    bool isRegistered(Action action) const { return m_registrations.contains(action); }

Q_SIGNALS:
    void shortcutsChanged();
    void failedChanged();

private:
    using Registration = std::unique_ptr<HotKeyService::Registration>;

    void bind(Action action);
    void followKeyboard();
    Registration add(const Shortcut& shortcut, Action action);
    void notePress(uint32_t id);
    void runPressed();

    /// Puts a shortcut in force; observers hear of it if it is another one.
    void assign(Action action, const Shortcut& shortcut);

    Preferences& m_preferences;
    HotKeyService& m_service;
    Scheduler& m_scheduler;
    std::map<Action, Shortcut> m_shortcuts;
    std::set<Action> m_failed;
    bool m_isSuspended = false;
    std::map<uint32_t, Handler> m_handlers;
    std::map<Action, Registration> m_registrations;
    std::vector<uint32_t> m_pressed;
    std::unique_ptr<Timer> m_delivery;
};

} // namespace quillet
