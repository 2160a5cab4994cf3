#pragma once

#include "platform/Alive.h"
#include "platform/DesktopSettings.h"
#include "platform/Power.h"
#include "platform/Preferences.h"
#include "settings/Permissions.h"
#include "switches/KeyboardLock.h"

#include <array>
#include <optional>

namespace quillet {

/// The switches for the whole system: keeping it awake, the desktop's icons, hidden files, the dark
/// appearance, the display, the keyboard. Most of them turn what belongs to the desktop and may be
/// changed elsewhere, so the fields show what was asked for at once and what is known as soon as it
/// is known. Keep-awake is on exactly while an assertion is held; there is never more than one.
class SwitchCenter : public QObject {
    Q_OBJECT

public:
    enum class AwakeDuration { minutes30, hour1, hours2, hours4, indefinitely };

    static constexpr std::array awakeDurations{AwakeDuration::minutes30, AwakeDuration::hour1,
                                               AwakeDuration::hours2, AwakeDuration::hours4,
                                               AwakeDuration::indefinitely};
    static std::optional<std::chrono::seconds> length(AwakeDuration duration); ///< none: no end

    static PreferenceKey<bool> allowDisplaySleepKey();

    /// Whether keep-awake is on without an end, for the next run to turn it on again.
    static PreferenceKey<bool> indefiniteKey();

    struct Services {
        Power& power;
        DesktopSettings& desktop;
        Preferences& preferences;
        Scheduler& scheduler;
        Permissions& permissions;
        KeyboardGrab& keyboard;
    };

    SwitchCenter(const Services& services, KeyboardLock::ShowHUD showHUD,
                 std::function<void()> showSetupGuide);

    bool keepAwake() const { return m_keepAwake; }

    /// Absent while keep-awake is off.
    std::optional<AwakeDuration> awakeDuration() const { return m_awakeDuration; }

    /// When keep-awake ends; absent while it is off or has no end.
    std::optional<QDateTime> awakeUntil() const { return m_awakeUntil; }

    bool allowDisplaySleep() const { return m_allowDisplaySleep; }
    bool desktopIconsHidden() const { return m_desktopIconsHidden; }
    bool hiddenFilesShown() const { return m_hiddenFilesShown; }
    bool darkMode() const { return m_darkMode; }
    bool keyboardLocked() const { return m_keyboardLocked; }

    /// Why a switch does nothing on this desktop, for people; empty where it works.
    QString whyNoDesktopIcons() const;
    QString whyNoHiddenFiles() const;
    QString whyNoDisplaySleep() const { return m_services.power.whyNoDisplaySleep(); }
    QString whyKeyboardNotLocked() const; ///< empty while it is locked

    /// Turns keep-awake on anew, or off whatever the duration. It stays off where the machine
    /// cannot be kept awake, and goes off when that turns out later.
    void setKeepAwake(bool on, AwakeDuration duration);

    /// Lets the display sleep while the machine is kept awake. The end stays where it is.
    void setAllowDisplaySleep(bool allow);

    void setDesktopIconsHidden(bool hidden);
    void setHiddenFilesShown(bool shown);

    /// `done` runs once darkMode() shows what came of it. It is told whether the desktop did this;
    /// a later toggle may have gone back meanwhile.
    void setDarkMode(bool dark, std::function<void(bool isDone)> done = {});
    void toggleDarkMode() { setDarkMode(!m_services.desktop.isDark()); }
    void sleepDisplay() { m_services.power.sleepDisplay(); }

    /// A shortcut that asks for this may have the keyboard itself for as long as people press it,
    /// so a refusal is final only after half a second. `done` runs once keyboardLocked() tells.
    void lockKeyboardForCleaning(std::function<void()> done = {});

Q_SIGNALS:
    void keepAwakeChanged();
    void awakeDurationChanged();
    void awakeUntilChanged();
    void allowDisplaySleepChanged();
    void desktopIconsHiddenChanged();
    void hiddenFilesShownChanged();
    void darkModeChanged();
    void keyboardLockedChanged();

private:
    using Key = DesktopSettings::FileManagerKey;

    void endKeepAwake();
    void tryToLockKeyboard(int tries);
    void endAfter(std::chrono::milliseconds span);
    bool finderBool(Key key, bool fallback) const;
    void followDesktop();

    template<typename T>
    void assign(T& field, const T& value, void (SwitchCenter::*changed)()) {
        if (field == value)
            return;
        field = value;
        Q_EMIT(this->*changed)();
    }

    Services m_services;
    std::function<void()> m_showSetupGuide;
    bool m_keepAwake = false;
    std::optional<AwakeDuration> m_awakeDuration;
    std::optional<QDateTime> m_awakeUntil;
    bool m_allowDisplaySleep;
    std::unique_ptr<Power::Assertion> m_assertion;
    std::unique_ptr<Timer> m_awakeTimer;
    bool m_desktopIconsHidden;
    bool m_hiddenFilesShown;
    bool m_darkMode;
    int m_darkToggles = 0;
    bool m_keyboardLocked = false;
    KeyboardLock m_keyboardLock;
    std::unique_ptr<Timer> m_keyboardTry;
    std::vector<std::function<void()>> m_keyboardWaiting; ///< for the end of the tries
    DesktopSettings::Observation m_desktopChanges;
    Alive m_alive;
};

} // namespace quillet
