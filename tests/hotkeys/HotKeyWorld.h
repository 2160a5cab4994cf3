#pragma once

#include "hotkeys/HotKeyCenter.h"
#include "platform/memory/MemoryHotKeys.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"

namespace quillet {

/// A keyboard in memory with the hot key center at work on it.
class HotKeyWorld {
public:
    using Action = HotKeyAction;

    /// Quits and starts again over the same preferences.
    void relaunch() {
        center.reset();
        center = std::make_unique<HotKeyCenter>(preferences, keys, scheduler);
    }

    /// Presses an action's shortcut of this moment; what was run by it.
    std::vector<Action> press(const Shortcut& shortcut) {
        ran.clear();
        keys.press(
            {static_cast<uint32_t>(shortcut.keyCode), static_cast<uint32_t>(shortcut.modifiers)});
        scheduler.advance(std::chrono::milliseconds(1));
        return ran;
    }

    void handle(Action action) {
        center->registerAction(action, [this, action] { ran.push_back(action); });
    }

    static PreferenceKey<QByteArray> key(int number) {
        return {QStringLiteral("hotkey.") + QString::number(number), {}};
    }

    MemoryScheduler scheduler;
    MemoryPreferences preferences;
    MemoryHotKeys keys{scheduler};
    std::unique_ptr<HotKeyCenter> center =
        std::make_unique<HotKeyCenter>(preferences, keys, scheduler);
    std::vector<Action> ran;
};

} // namespace quillet
