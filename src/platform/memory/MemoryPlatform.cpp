#include "platform/memory/MemoryPlatform.h"

namespace quillet {

using namespace Qt::StringLiterals;

Platform makeMemoryPlatform() {
    Platform platform;
    platform.name = u"memory"_s;
    platform.scheduler = std::make_unique<MemoryScheduler>();
    platform.preferences = std::make_unique<MemoryPreferences>();
    platform.commands = std::make_unique<MemoryCommands>(*platform.scheduler);
    platform.desktop = std::make_unique<MemoryDesktopSettings>();
    platform.sounds = std::make_unique<MemorySoundPlayer>(*platform.scheduler);
    platform.statistics = std::make_unique<MemoryHostStatistics>(
        static_cast<const MemoryScheduler&>(*platform.scheduler));
    platform.screens = std::make_unique<MemoryScreens>();
    platform.workspace = std::make_unique<MemoryWorkspace>();
    platform.focusedWindow = std::make_unique<MemoryFocusedWindow>(*platform.scheduler);
    platform.pasteboard = std::make_unique<MemoryPasteboard>();
    platform.access = std::make_unique<MemoryAccess>();
    platform.hotKeys = std::make_unique<MemoryHotKeys>(*platform.scheduler);
    platform.panels = std::make_unique<MemoryPanels>();
    platform.keys = std::make_unique<MemoryKeySynthesis>();
    platform.keyboard = std::make_unique<MemoryKeyboardGrab>();
    platform.power = std::make_unique<MemoryPower>();
    platform.capabilities = [] { return std::vector<Capability>(); };
    return platform;
}

MemoryFakes::MemoryFakes(const Platform& platform)
    : scheduler(static_cast<MemoryScheduler&>(*platform.scheduler)),
      preferences(static_cast<MemoryPreferences&>(*platform.preferences)),
      commands(static_cast<MemoryCommands&>(*platform.commands)),
      desktop(static_cast<MemoryDesktopSettings&>(*platform.desktop)),
      sounds(static_cast<MemorySoundPlayer&>(*platform.sounds)),
      statistics(static_cast<MemoryHostStatistics&>(*platform.statistics)),
      screens(static_cast<MemoryScreens&>(*platform.screens)),
      workspace(static_cast<MemoryWorkspace&>(*platform.workspace)),
      focusedWindow(static_cast<MemoryFocusedWindow&>(*platform.focusedWindow)),
      pasteboard(static_cast<MemoryPasteboard&>(*platform.pasteboard)),
      access(static_cast<MemoryAccess&>(*platform.access)),
      hotKeys(static_cast<MemoryHotKeys&>(*platform.hotKeys)),
      panels(static_cast<MemoryPanels&>(*platform.panels)),
      keys(static_cast<MemoryKeySynthesis&>(*platform.keys)),
      keyboard(static_cast<MemoryKeyboardGrab&>(*platform.keyboard)),
      power(static_cast<MemoryPower&>(*platform.power)) {}

} // namespace quillet
