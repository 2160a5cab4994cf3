#pragma once

#include "app/look/CommandKeys.h"
#include "app/look/Theme.h"
#include "app/look/Toast.h"
#include "app/look/Tooltips.h"
#include "clipboard/ClipboardKeeper.h"
#include "clipboard/ClipboardStore.h"
#include "clipboard/ClipContainer.h"
#include "hotkeys/ui/ShortcutBanner.h"
#include "hotkeys/WindowSnapper.h"
#include "platform/Platform.h"
#include "settings/Permissions.h"
#include "settings/Sounds.h"
#include "settings/ui/SetupWindow.h"
#include "shelf/AppIconStore.h"
#include "shelf/DragFiles.h"
#include "shelf/ui/ShelfController.h"
#include "stats/StatsReporter.h"
#include "switches/SwitchCenter.h"

#include <memory>

namespace quillet {

/// Every long-lived service. Members are created from top to bottom and destroyed from bottom to
/// top, so each may use those above it for as long as it lives.
struct Composition {
    explicit Composition(Platform owned) : platform(std::move(owned)) {}

    Platform platform;
    std::unique_ptr<Permissions> permissions;
    StatsReporter statsReporter{*platform.statistics, *platform.scheduler};
    std::unique_ptr<Sounds> sounds;
    std::unique_ptr<ClipContainer> container;
    std::unique_ptr<ClipboardStore> clipboard;
    std::unique_ptr<ClipboardKeeper> keeper;
    Theme theme;
    Tooltips tooltips{{theme, *platform.scheduler, *platform.panels}};
    CommandKeys commandKeys{*platform.hotKeys};
    Toast toast{{theme, *platform.scheduler, *platform.panels}, *platform.screens};
    AppIconStore applications{*platform.workspace};
    std::unique_ptr<DragFiles> dragFiles;
    std::unique_ptr<ShelfController> shelf;
    std::unique_ptr<Timer> shelfPreparation;
    std::unique_ptr<WindowSnapper> snapper;
    std::unique_ptr<HotKeyCenter> hotKeys;
    std::unique_ptr<ShortcutAlternatives> alternatives;
    std::unique_ptr<ShortcutBanner> shortcutBanner;
    std::unique_ptr<SetupWindow> setup;
    std::unique_ptr<SwitchCenter> switches;
    DesktopSettings::Observation desktopChanges;
    Preferences::Observation onboarding; ///< while the user has not seen the guide
};

} // namespace quillet
