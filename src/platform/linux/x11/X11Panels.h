#pragma once

#include "platform/linux/x11/X11RawInput.h"
#include "platform/linux/x11/X11Screens.h"
#include "platform/Panels.h"
#include "platform/Scheduler.h"

namespace quillet {

class X11Panel;

/// Panels as windows that the window manager does not manage. Knows their order and which of them
/// has the keyboard, and takes it away when the user clicks elsewhere or another window becomes
/// active. Outlives its panels.
class X11Panels : public Panels {
public:
    X11Panels(X11Connection& connection, X11RawInput& rawInput, const X11Screens& screens,
              Scheduler& scheduler);

    std::unique_ptr<Panel> make(QWidget& content, const PanelStyle& style) override;
    bool isTranslucent() const override { return m_isTranslucent; }

    /// Whether no panel has the keyboard and the window that was active when one took it last is
    /// still there and the active one again.
    bool isKeyboardBack() const;

    /// Asks the window manager for that window where another has become active meanwhile, such as
    /// the one under the pointer where the focus follows it.
    void askForKeyboardBack() const;

    /// Whether a panel has grabbed the keyboard or is trying to.
    bool isTakingKeyboard() const;

    /// Takes the keyboard away from the panel that has it, as when the user turns elsewhere.
    void resignKey();

private:
    friend class X11Panel;

    void raise(X11Panel& panel);
    void becameKey(X11Panel& panel);
    void gaveUpKey(const X11Panel& panel);
    void removed(X11Panel& panel);

    void handle(const xcb_generic_event_t& event);
    void buttonPressed(uint32_t button);
    bool isPointerOnOurs() const;
    xcb_get_property_cookie_t askForActiveWindow() const;
    std::optional<xcb_window_t> activeWindow(xcb_get_property_cookie_t asked) const;
    std::optional<xcb_window_t> activeAtKey() const;
    bool isViewable(xcb_window_t window) const;
    void activeWindowChanged();

    X11Connection& m_connection;
    X11RawInput& m_rawInput;
    const X11Screens& m_screens;
    Scheduler& m_scheduler;
    xcb_atom_t m_activeWindow;
    xcb_atom_t m_compositor;
    std::vector<X11Panel*> m_panels; ///< lowest first
    X11Panel* m_key = nullptr;
    /// The active window when a panel last became key. Asked then, and looked at when it is needed,
    /// because a panel is to show without waiting.
    mutable std::optional<xcb_window_t> m_activeAtKey;
    mutable std::optional<xcb_get_property_cookie_t> m_activeAtKeyAsked;
    bool m_isTranslucent = false;
    X11RawInput::Watch m_clicks; ///< while there is a key panel
    X11Connection::Listening m_listening;
};

} // namespace quillet
