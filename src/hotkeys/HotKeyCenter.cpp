#include "hotkeys/HotKeyCenter.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillet {
namespace {

uint32_t rawValue(HotKeyAction action) {
    return static_cast<uint32_t>(action);
}

PreferenceKey<QByteArray> key(HotKeyAction action) {
    return {u"hotkey."_s + QString::number(rawValue(action)), {}};
}

} // namespace

HotKeyCenter::HotKeyCenter(Preferences& preferences, HotKeyService& service, Scheduler& scheduler)
    : m_preferences(preferences), m_service(service), m_scheduler(scheduler) {
    for (const HotKeyActionRow& row : hotKeyActions()) {
        const auto stored = Shortcut::fromJson(m_preferences.value(key(row.action)));
        m_shortcuts[row.action] = stored.value_or(row.defaultShortcut);
    }
    m_service.onPressed = [this](uint32_t id) { notePress(id); };
    m_service.onKeyboardChanged = [this] { followKeyboard(); };
}

HotKeyCenter::~HotKeyCenter() {
    m_service.onPressed = nullptr;
    m_service.onKeyboardChanged = nullptr;
}

void HotKeyCenter::registerAction(Action action, Handler handler) {
    m_handlers[rawValue(action)] = std::move(handler);
    bind(action);
}

void HotKeyCenter::set(const Shortcut& shortcut, Action action) {
    assign(action, shortcut);
    m_preferences.set(key(action), shortcut.toJson());
    bind(action);
}

void HotKeyCenter::resetAll() {
    for (const HotKeyActionRow& row : hotKeyActions()) {
        m_preferences.remove(key(row.action).name);
        assign(row.action, row.defaultShortcut);
        bind(row.action);
    }
}

bool HotKeyCenter::isFree(const Shortcut& shortcut, Action action) {
    const bool isOurs = std::ranges::any_of(m_shortcuts, [&](const auto& entry) {
        return entry.first != action && entry.second.keyCode == shortcut.keyCode &&
               entry.second.modifiers == shortcut.modifiers;
    });
    return !isOurs && add(shortcut, action) != nullptr;
}

void HotKeyCenter::suspend() {
    m_isSuspended = true;
    m_registrations.clear();
}

void HotKeyCenter::resume() {
    m_isSuspended = false;
    for (const HotKeyActionRow& row : hotKeyActions()) {
        if (m_handlers.contains(rawValue(row.action)))
            bind(row.action);
    }
}

void HotKeyCenter::bind(Action action) {
    m_registrations.erase(action);
    const bool hadFailed = m_failed.contains(action);
    if (auto registration = add(m_shortcuts.at(action), action)) {
        m_registrations[action] = std::move(registration);
        m_failed.erase(action);
    } else {
        m_failed.insert(action);
    }
    if (m_failed.contains(action) != hadFailed)
        Q_EMIT failedChanged();
}

void HotKeyCenter::followKeyboard() {
    if (m_isSuspended)
        return;
    for (const HotKeyActionRow& row : hotKeyActions()) {
        const auto registration = m_registrations.find(row.action);
        const bool isLost =
            registration != m_registrations.end() && !registration->second->isInForce();
        if (m_handlers.contains(rawValue(row.action)) && (isLost || m_failed.contains(row.action)))
            bind(row.action);
    }
}

HotKeyCenter::Registration HotKeyCenter::add(const Shortcut& shortcut, Action action) {
    // Only a stored shortcut that was tampered with is out of range.
    if (!std::in_range<uint32_t>(shortcut.keyCode) || !std::in_range<uint32_t>(shortcut.modifiers))
        return nullptr;
    return m_service.add(static_cast<uint32_t>(shortcut.keyCode),
                         static_cast<uint32_t>(shortcut.modifiers), rawValue(action));
}

void HotKeyCenter::notePress(uint32_t id) {
    // Handlers open windows and start captures, which must not happen inside the system's delivery
    // of the key.
    m_pressed.push_back(id);
    if (!m_delivery)
        m_delivery = m_scheduler.after(0ms, [this] { runPressed(); });
}

void HotKeyCenter::runPressed() {
    m_delivery.reset();
    for (const uint32_t id : std::exchange(m_pressed, {})) {
        const auto found = m_handlers.find(id);
        if (found == m_handlers.end())
            continue;
        const Handler handler = found->second; // it may replace itself while it runs
        handler();
    }
}

void HotKeyCenter::assign(Action action, const Shortcut& shortcut) {
    Shortcut& current = m_shortcuts[action];
    if (current == shortcut)
        return;
    current = shortcut;
    Q_EMIT shortcutsChanged();
}

} // namespace quillet
