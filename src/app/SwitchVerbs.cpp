#include "app/SwitchVerbs.h"

#include "switches/SwitchCenter.h"

using namespace Qt::StringLiterals;

namespace quillet {

namespace {

using AwakeDuration = SwitchCenter::AwakeDuration;

AwakeDuration awakeDuration(const QString& word) {
    constexpr std::array<std::pair<QLatin1StringView, AwakeDuration>, 4> words{{
        {QLatin1StringView("30m"), AwakeDuration::minutes30},
        {QLatin1StringView("1h"), AwakeDuration::hour1},
        {QLatin1StringView("2h"), AwakeDuration::hours2},
        {QLatin1StringView("4h"), AwakeDuration::hours4},
    }};
    for (const auto& [name, duration] : words) {
        if (word == name)
            return duration;
    }
    return AwakeDuration::indefinitely;
}

/// With its offset from UTC, for readers elsewhere.
QJsonValue json(const QDateTime& time) {
    return time.toOffsetFromUtc(time.offsetFromUtc()).toString(Qt::ISODate);
}

/// What "on", "off" or "toggle" makes of a switch.
bool wanted(const QString& word, bool isOn) {
    return word == u"toggle"_s ? !isOn : word == u"on"_s;
}

VerbResult keepAwake(SwitchCenter& switches, bool on, AwakeDuration duration) {
    switches.setKeepAwake(on, duration);
    return switches.keepAwake() == on
               ? VerbResult::done()
               : VerbResult::failed(u"nothing here can keep the machine awake"_s);
}

VerbResult outcome(const QString& obstacle) {
    return obstacle.isEmpty() ? VerbResult::done() : VerbResult::failed(obstacle);
}

} // namespace

VerbResult runSwitchVerb(const Command& command, SwitchCenter& switches) {
    const QString& word = command.choice;
    switch (command.verb) {
    case Verb::awakeOn:
        return keepAwake(switches, true, awakeDuration(word));
    case Verb::awakeOff:
        return keepAwake(switches, false, AwakeDuration::indefinitely);
    case Verb::awakeToggle:
        return keepAwake(switches, !switches.keepAwake(), AwakeDuration::indefinitely);
    case Verb::awakeAllowDisplaySleep:
        switches.setAllowDisplaySleep(word == u"on"_s);
        return VerbResult::done();
    case Verb::icons:
        switches.setDesktopIconsHidden(!wanted(word, !switches.desktopIconsHidden()));
        return outcome(switches.whyNoDesktopIcons());
    case Verb::hidden:
        switches.setHiddenFilesShown(wanted(word, switches.hiddenFilesShown()));
        return outcome(switches.whyNoHiddenFiles());
    case Verb::displaySleep:
        switches.sleepDisplay();
        return outcome(switches.whyNoDisplaySleep());
    default:
        return {};
    }
}

void runDarkVerb(const Command& command, SwitchCenter& switches,
                 const std::function<void(VerbResult)>& reply) {
    // Also where it is so already: the programs may not be since somebody chose a theme by hand.
    switches.setDarkMode(wanted(command.choice, switches.darkMode()), [reply](bool isDone) {
        reply(isDone ? VerbResult::done()
                     : VerbResult::failed(u"this desktop did not change its appearance"_s));
    });
}

void runKeyboardLockVerb(SwitchCenter& switches, const std::function<void(VerbResult)>& reply) {
    switches.lockKeyboardForCleaning(
        [&switches, reply] { reply(outcome(switches.whyKeyboardNotLocked())); });
}

QJsonObject switchesAsJson(const SwitchCenter& switches) {
    const auto until = switches.awakeUntil();
    return {{u"keepAwake"_s, switches.keepAwake()},
            {u"awakeUntil"_s, until ? json(*until) : QJsonValue()},
            {u"allowDisplaySleep"_s, switches.allowDisplaySleep()},
            {u"desktopIconsHidden"_s, switches.desktopIconsHidden()},
            {u"hiddenFilesShown"_s, switches.hiddenFilesShown()},
            {u"darkMode"_s, switches.darkMode()},
            {u"keyboardLocked"_s, switches.keyboardLocked()}};
}

} // namespace quillet
