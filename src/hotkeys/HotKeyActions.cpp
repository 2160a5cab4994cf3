#include "hotkeys/HotKeyActions.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

constexpr qint64 shiftCommand = ModifierKey::shiftKey | ModifierKey::cmdKey;
constexpr qint64 controlOption = ModifierKey::controlKey | ModifierKey::optionKey;

} // namespace

const std::vector<HotKeyActionRow>& hotKeyActions() {
    using enum HotKeyAction;
    using enum HotKeyGroup;
    static const std::vector<HotKeyActionRow> rows{
        {clipboardShelf, clipboard, u"Clipboard history"_s, {9, shiftCommand, u"V"_s}},
        {captureArea, capture, u"Capture area (Space: window)"_s, {19, shiftCommand, u"2"_s}},
        {captureScreen, capture, u"Capture full screen"_s, {18, shiftCommand, u"1"_s}},
        {captureText, capture, u"Copy text from screen"_s, {22, shiftCommand, u"6"_s}},
        {pickColor, capture, u"Pick color"_s, {26, shiftCommand, u"7"_s}},
        {snapLeft, windows, u"Left half"_s, {123, controlOption, u"←"_s}},
        {snapRight, windows, u"Right half"_s, {124, controlOption, u"→"_s}},
        {snapTop, windows, u"Top half"_s, {126, controlOption, u"↑"_s}},
        {snapBottom, windows, u"Bottom half"_s, {125, controlOption, u"↓"_s}},
        {maximize, windows, u"Maximize"_s, {36, controlOption, u"↩"_s}},
        {center, windows, u"Center"_s, {8, controlOption, u"C"_s}},
    };
    return rows;
}

const HotKeyActionRow& row(HotKeyAction action) {
    return *std::ranges::find(hotKeyActions(), action, &HotKeyActionRow::action);
}

const std::vector<HotKeyGroup>& hotKeyGroups() {
    using enum HotKeyGroup;
    static const std::vector<HotKeyGroup> groups{capture, clipboard, windows};
    return groups;
}

QString rawValue(HotKeyGroup group) {
    switch (group) {
    case HotKeyGroup::capture:
        return u"Capture"_s;
    case HotKeyGroup::clipboard:
        return u"Clipboard"_s;
    case HotKeyGroup::windows:
        return u"Windows"_s;
    }
    return {};
}

} // namespace quillet
