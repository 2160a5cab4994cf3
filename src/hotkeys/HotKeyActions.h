#pragma once

#include "hotkeys/Shortcut.h"

#include <QString>
#include <vector>

namespace quillet {

/// What a system-wide shortcut can do. The value is the id that goes to the system and into the
/// name of the preference, so it stays as it is.
enum class HotKeyAction : uint32_t {
    clipboardShelf = 1,
    captureArea = 2,
    captureScreen = 3,
    captureText = 4,
    pickColor = 5,
    snapLeft = 10,
    snapRight = 11,
    snapTop = 12,
    snapBottom = 13,
    maximize = 14,
    center = 15,
};

/// The headings under which actions are listed.
enum class HotKeyGroup { capture, clipboard, windows };

struct HotKeyActionRow {
    HotKeyAction action;
    HotKeyGroup group;
    QString title;
    Shortcut defaultShortcut;
};

/// Every action once, in the order in which they are shown and gone through.
const std::vector<HotKeyActionRow>& hotKeyActions();
const HotKeyActionRow& row(HotKeyAction action);

const std::vector<HotKeyGroup>& hotKeyGroups();
QString rawValue(HotKeyGroup group);

} // namespace quillet
