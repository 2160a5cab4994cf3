#pragma once

#include "platform/Access.h"
#include "platform/Commands.h"
#include "platform/DesktopSettings.h"
#include "platform/FocusedWindow.h"
#include "platform/HostStatistics.h"
#include "platform/HotKeyService.h"
#include "platform/KeyboardGrab.h"
#include "platform/KeySynthesis.h"
#include "platform/Panels.h"
#include "platform/Pasteboard.h"
#include "platform/Power.h"
#include "platform/Preferences.h"
#include "platform/Scheduler.h"
#include "platform/Screens.h"
#include "platform/SoundPlayer.h"
#include "platform/Workspace.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillet {

/// One thing the program can do here or not.
struct Capability {
    QString name;
    bool available = false;
    QString cause; ///< why it is missing, for people; empty where it is available
};

/// Owns one backend of every ability, in an order in which each may use those before it.
struct Platform {
    QString name;                     ///< "x11", "memory"
    std::shared_ptr<void> foundation; ///< what the backends stand on; lives longest
    std::unique_ptr<Scheduler> scheduler;
    std::unique_ptr<Preferences> preferences;
    std::unique_ptr<Commands> commands;
    std::unique_ptr<DesktopSettings> desktop;
    std::unique_ptr<SoundPlayer> sounds;
    std::unique_ptr<HostStatistics> statistics;
    std::unique_ptr<Screens> screens;
    std::unique_ptr<Workspace> workspace;
    std::unique_ptr<FocusedWindow> focusedWindow;
    std::unique_ptr<Pasteboard> pasteboard;
    std::unique_ptr<Access> access;
    std::unique_ptr<HotKeyService> hotKeys;
    std::unique_ptr<Panels> panels;
    std::unique_ptr<KeySynthesis> keys;
    std::unique_ptr<KeyboardGrab> keyboard;
    std::unique_ptr<Power> power;

    /// What works here at this moment and what does not.
    std::function<std::vector<Capability>()> capabilities;
};

} // namespace quillet
