#pragma once

#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryDesktopSettings.h"
#include "platform/memory/MemoryFocusedWindow.h"
#include "platform/memory/MemoryHostStatistics.h"
#include "platform/memory/MemoryHotKeys.h"
#include "platform/memory/MemoryKeyboardGrab.h"
#include "platform/memory/MemoryKeySynthesis.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryPasteboard.h"
#include "platform/memory/MemoryPower.h"
#include "platform/memory/MemoryPreferences.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryScreens.h"
#include "platform/memory/MemorySoundPlayer.h"
#include "platform/memory/MemoryWorkspace.h"
#include "platform/Platform.h"

namespace quillet {

/// A desktop that exists in memory only.
Platform makeMemoryPlatform();

/// The fakes inside a platform of makeMemoryPlatform(), to script them and see what they recorded.
struct MemoryFakes {
    explicit MemoryFakes(const Platform& platform);

    MemoryScheduler& scheduler;
    MemoryPreferences& preferences;
    MemoryCommands& commands;
    MemoryDesktopSettings& desktop;
    MemorySoundPlayer& sounds;
    MemoryHostStatistics& statistics;
    MemoryScreens& screens;
    MemoryWorkspace& workspace;
    MemoryFocusedWindow& focusedWindow;
    MemoryPasteboard& pasteboard;
    MemoryAccess& access;
    MemoryHotKeys& hotKeys;
    MemoryPanels& panels;
    MemoryKeySynthesis& keys;
    MemoryKeyboardGrab& keyboard;
    MemoryPower& power;
};

} // namespace quillet
