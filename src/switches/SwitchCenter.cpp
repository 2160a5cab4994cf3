#include "switches/SwitchCenter.h"

#include <QLoggingCategory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace quillet {

Q_LOGGING_CATEGORY(logSwitches, "quillet.switches", QtWarningMsg)

namespace {

constexpr double cleaningTime = 45; // seconds

constexpr auto keyboardTryInterval = 50ms;
constexpr int keyboardTries = 11;

} // namespace

std::optional<std::chrono::seconds> SwitchCenter::length(AwakeDuration duration) {
    switch (duration) {
    case AwakeDuration::minutes30:
        return 1800s;
    case AwakeDuration::hour1:
        return 3600s;
    case AwakeDuration::hours2:
        return 7200s;
    case AwakeDuration::hours4:
        return 14400s;
    case AwakeDuration::indefinitely:
        return std::nullopt;
    }
    Q_UNREACHABLE();
}

PreferenceKey<bool> SwitchCenter::allowDisplaySleepKey() {
    return {u"awake.allowDisplaySleep"_s, false};
}

PreferenceKey<bool> SwitchCenter::indefiniteKey() {
    return {u"awake.indefinite"_s, false};
}

SwitchCenter::SwitchCenter(const Services& services, KeyboardLock::ShowHUD showHUD,
                           std::function<void()> showSetupGuide)
    : m_services(services),
      m_showSetupGuide(std::move(showSetupGuide)),
      m_allowDisplaySleep(services.preferences.value(allowDisplaySleepKey())),
      m_desktopIconsHidden(!finderBool(Key::createDesktop, true)),
      m_hiddenFilesShown(finderBool(Key::showAllFiles, false)),
      m_darkMode(services.desktop.isDark()),
      m_keyboardLock(services.keyboard, services.scheduler, std::move(showHUD)),
      m_desktopChanges(services.desktop.observe([this] { followDesktop(); })) {}

QString SwitchCenter::whyNoDesktopIcons() const {
    return m_services.desktop.cause(Key::createDesktop);
}

QString SwitchCenter::whyNoHiddenFiles() const {
    return m_services.desktop.cause(Key::showAllFiles);
}

QString SwitchCenter::whyKeyboardNotLocked() const {
    if (m_keyboardLocked)
        return {};
    const QString refusal = m_services.permissions.cause(Permissions::Kind::accessibility);
    return refusal.isEmpty() ? u"another program has the keyboard"_s : refusal;
}

void SwitchCenter::setKeepAwake(bool on, AwakeDuration duration) {
    endKeepAwake();
    m_services.preferences.set(indefiniteKey(), on && duration == AwakeDuration::indefinitely);
    if (!on)
        return;
    m_assertion = m_services.power.assertion(
        m_allowDisplaySleep ? Power::AssertionType::preventUserIdleSystemSleep
                            : Power::AssertionType::preventUserIdleDisplaySleep,
        u"Quillet Keep Awake"_s);
    if (!m_assertion)
        return;
    // As if it had been refused at once: the next run tries again.
    m_assertion->onLost = [this] { endKeepAwake(); };
    assign(m_keepAwake, true, &SwitchCenter::keepAwakeChanged);
    assign(m_awakeDuration, {duration}, &SwitchCenter::awakeDurationChanged);
    if (const auto span = length(duration))
        endAfter(*span);
}

void SwitchCenter::endKeepAwake() {
    m_assertion.reset();
    m_awakeTimer.reset();
    assign(m_awakeUntil, {}, &SwitchCenter::awakeUntilChanged);
    assign(m_awakeDuration, {}, &SwitchCenter::awakeDurationChanged);
    assign(m_keepAwake, false, &SwitchCenter::keepAwakeChanged);
}

void SwitchCenter::endAfter(std::chrono::milliseconds span) {
    assign(m_awakeUntil, {m_services.scheduler.now().addMSecs(span.count())},
           &SwitchCenter::awakeUntilChanged);
    m_awakeTimer = m_services.scheduler.after(
        span, [this] { setKeepAwake(false, AwakeDuration::indefinitely); });
}

void SwitchCenter::setAllowDisplaySleep(bool allow) {
    assign(m_allowDisplaySleep, allow, &SwitchCenter::allowDisplaySleepChanged);
    m_services.preferences.set(allowDisplaySleepKey(), allow);
    if (!m_keepAwake || !m_awakeDuration)
        return;
    const std::optional<QDateTime> end = m_awakeUntil;
    setKeepAwake(true, *m_awakeDuration);
    if (!end || !m_keepAwake)
        return;
    const std::chrono::milliseconds remaining(m_services.scheduler.now().msecsTo(*end));
    if (remaining > 0ms)
        endAfter(remaining);
}

void SwitchCenter::setDesktopIconsHidden(bool hidden) {
    if (!whyNoDesktopIcons().isEmpty())
        return;
    assign(m_desktopIconsHidden, hidden, &SwitchCenter::desktopIconsHiddenChanged);
    m_services.desktop.setFileManagerValue(Key::createDesktop, !hidden);
}

void SwitchCenter::setHiddenFilesShown(bool shown) {
    if (!whyNoHiddenFiles().isEmpty())
        return;
    assign(m_hiddenFilesShown, shown, &SwitchCenter::hiddenFilesShownChanged);
    m_services.desktop.setFileManagerValue(Key::showAllFiles, shown);
}

void SwitchCenter::setDarkMode(bool dark, std::function<void(bool isDone)> done) {
    const auto end = [this, dark, toggle = ++m_darkToggles, done = std::move(done)](bool isSet) {
        if (!isSet)
            m_services.desktop.openSettings();
        followDesktop();
        const bool isOutdated = toggle != m_darkToggles;
        if (done)
            done(isOutdated ? isSet : m_darkMode == dark);
    };
    m_services.desktop.makeDark(dark, m_alive(end));
}

void SwitchCenter::lockKeyboardForCleaning(std::function<void()> done) {
    m_services.permissions.refresh();
    if (!m_services.permissions.accessibility()) {
        m_showSetupGuide();
        if (done)
            done();
        return;
    }
    m_keyboardLock.onEnd = [this] {
        assign(m_keyboardLocked, false, &SwitchCenter::keyboardLockedChanged);
    };
    if (done)
        m_keyboardWaiting.push_back(std::move(done));
    tryToLockKeyboard(keyboardTries);
}

void SwitchCenter::tryToLockKeyboard(int tries) {
    m_keyboardTry.reset();
    if (m_keyboardLock.start(cleaningTime)) {
        assign(m_keyboardLocked, true, &SwitchCenter::keyboardLockedChanged);
    } else if (tries > 1) {
        m_keyboardTry = m_services.scheduler.after(keyboardTryInterval,
                                                   [this, tries] { tryToLockKeyboard(tries - 1); });
        return;
    } else {
        qCWarning(logSwitches, "another program holds the keyboard");
    }
    for (const auto& done : std::exchange(m_keyboardWaiting, {}))
        done();
}

/// Desktops and their users write such a setting in many ways.
bool SwitchCenter::finderBool(Key key, bool fallback) const {
    const QVariant value = m_services.desktop.fileManagerValue(key);
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QString: {
        const QString text = value.toString().toLower();
        return text == "1"_L1 || text == "true"_L1 || text == "yes"_L1;
    }
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
        return value.toDouble() != 0;
    default:
        return fallback;
    }
}

void SwitchCenter::followDesktop() {
    assign(m_darkMode, m_services.desktop.isDark(), &SwitchCenter::darkModeChanged);
    assign(m_desktopIconsHidden, !finderBool(Key::createDesktop, true),
           &SwitchCenter::desktopIconsHiddenChanged);
    assign(m_hiddenFilesShown, finderBool(Key::showAllFiles, false),
           &SwitchCenter::hiddenFilesShownChanged);
}

} // namespace quillet
