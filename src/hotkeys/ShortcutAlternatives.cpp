#include "hotkeys/ShortcutAlternatives.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quillet {
namespace {

const PreferenceKey<QStringList> toldKey{u"shortcuts.refusalsTold"_s, {}};

QString name(const ShortcutAlternatives::Refusal& refusal) {
    return u"%1 %2"_s.arg(static_cast<uint32_t>(refusal.action)).arg(refusal.shortcut.display());
}

} // namespace

ShortcutAlternatives::ShortcutAlternatives(HotKeyCenter& center, Preferences& preferences)
    : m_center(center), m_preferences(preferences) {
    for (const auto changed : {&HotKeyCenter::failedChanged, &HotKeyCenter::shortcutsChanged})
        QObject::connect(&center, changed, &m_listener, [this] { m_refusals.reset(); });
}

const std::vector<ShortcutAlternatives::Refusal>& ShortcutAlternatives::refusals() const {
    if (!m_refusals)
        m_refusals = findRefusals();
    return *m_refusals;
}

std::vector<ShortcutAlternatives::Refusal> ShortcutAlternatives::findRefusals() const {
    std::vector<Refusal> refusals;
    for (const HotKeyActionRow& row : hotKeyActions()) {
        if (!m_center.failed().contains(row.action))
            continue;
        const Shortcut refused = m_center.shortcut(row.action);
        const Shortcut other{refused.keyCode, ModifierKey::optionKey | ModifierKey::cmdKey,
                             refused.keyName};
        const bool isFree = m_center.isFree(other, row.action);
        refusals.push_back({row.action, refused, isFree ? std::optional(other) : std::nullopt});
    }
    return refusals;
}

bool ShortcutAlternatives::isNews() const {
    const QStringList told = m_preferences.value(toldKey);
    return std::ranges::any_of(
        refusals(), [&told](const Refusal& refusal) { return !told.contains(name(refusal)); });
}

void ShortcutAlternatives::noteTold() {
    QStringList told;
    for (const Refusal& refusal : refusals())
        told << name(refusal);
    m_preferences.set(toldKey, told);
}

void ShortcutAlternatives::accept() {
    const std::vector<Refusal> refused = refusals(); // each one accepted changes them
    for (const Refusal& refusal : refused) {
        if (refusal.alternative && m_center.isFree(*refusal.alternative, refusal.action))
            m_center.set(*refusal.alternative, refusal.action);
    }
}

} // namespace quillet
