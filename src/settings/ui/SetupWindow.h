#pragma once

#include "app/look/Look.h"
#include "hotkeys/HotKeyCenter.h"
#include "platform/Preferences.h"
#include "platform/Screens.h"
#include "settings/Permissions.h"

#include <memory>
#include <QWidget>

namespace quillet {

/// The setup guide's window, made when it is first shown and kept from then on. Its button says
/// that the user has seen the guide; closing the window does not, so that it comes again at the
/// next launch. On a screen that is too low for it the window is lower, and scrolls if it must.
class SetupWindow {
public:
    struct Services {
        Look look;
        Permissions& permissions;
        HotKeyCenter& hotKeys;
        Preferences& preferences;
        Screens& screens;
    };

    explicit SetupWindow(const Services& services) : m_services(services) {}

    /// The one of the process, which its composition puts here. For app/ alone.
    static inline SetupWindow* shared = nullptr;

    /// Whether the user is done with the guide.
    static PreferenceKey<bool> didOnboardKey();

    /// Shows the guide in front of everything else, with the permissions as they are now.
    void show();

    QWidget* window() const { return m_window.get(); } ///< null before it is first shown

private:
    void makeWindow();
    void finish();

    Services m_services;
    std::unique_ptr<QWidget> m_window;
};

} // namespace quillet
