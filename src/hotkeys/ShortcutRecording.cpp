#include "hotkeys/ShortcutRecording.h"

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

constexpr quint16 escapeKey = 53;

/// Shift and command with 3, 4 or 5.
bool isScreenshotShortcut(const Shortcut& shortcut) {
    return shortcut.modifiers == (ModifierKey::shiftKey | ModifierKey::cmdKey) &&
           (shortcut.keyCode == 20 || shortcut.keyCode == 21 || shortcut.keyCode == 23);
}

} // namespace

ShortcutRecording::ShortcutRecording(HotKeyCenter& center, HotKeyAction action)
    : m_center(center), m_action(action) {}

ShortcutRecording::~ShortcutRecording() {
    if (m_isRecording)
        m_center.resume();
}

void ShortcutRecording::start() {
    m_warning.reset();
    m_isRecording = true;
    m_center.suspend();
    notify();
}

bool ShortcutRecording::handle(const KeyDown& event) {
    if (!m_isRecording)
        return false;
    if (event.keyCode == escapeKey) {
        stop(false);
        return true;
    }
    const auto shortcut = Shortcut::fromEvent(event);
    if (!shortcut) {
        warn(u"Include ⌘, ⌥ or ⌃"_s);
        return true;
    }
    if (const auto other = otherActionWith(*shortcut)) {
        warn(u"Already used for "_s + row(*other).title.toLower());
        return true;
    }
    m_warning.reset();
    if (isScreenshotShortcut(*shortcut))
        m_warning = u"macOS uses this for its own screenshots"_s;
    m_center.set(*shortcut, m_action);
    stop(true);
    return true;
}

QString ShortcutRecording::label() const {
    return m_isRecording ? u"Press keys…"_s : m_center.shortcut(m_action).display();
}

std::optional<QString> ShortcutRecording::note() const {
    if (m_warning)
        return m_warning;
    if (m_center.failed().contains(m_action))
        return u"Another app is using this shortcut"_s;
    return {};
}

std::optional<HotKeyAction> ShortcutRecording::otherActionWith(const Shortcut& shortcut) const {
    for (const HotKeyActionRow& row : hotKeyActions()) {
        if (row.action != m_action && m_center.shortcut(row.action) == shortcut)
            return row.action;
    }
    return {};
}

void ShortcutRecording::warn(const QString& warning) {
    m_warning = warning;
    notify();
}

void ShortcutRecording::stop(bool keepWarning) {
    if (m_isRecording)
        m_center.resume();
    m_isRecording = false;
    if (!keepWarning)
        m_warning.reset();
    notify();
}

void ShortcutRecording::notify() const {
    if (onChange)
        onChange();
}

} // namespace quillet
