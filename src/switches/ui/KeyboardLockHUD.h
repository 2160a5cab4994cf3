#pragma once

#include "app/look/Buttons.h"
#include "platform/Screens.h"
#include "switches/KeyboardLock.h"

namespace quillet {

/// What one sees while the keyboard is locked: that it is, for how long, and a button to end it.
/// The window is larger than the card by the shadow.
class KeyboardLockHUD : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize cardSize{320, 220};
    static constexpr double cornerRadius = 26;
    static constexpr int margin = 48;

    KeyboardLockHUD(const Look& look, HUDState& state, std::function<void()> onDone);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void showRemaining();
    QString countdown() const;

    Look m_look;
    HUDState& m_state;
    Button m_done;
};

/// Shows the panel in the middle of the main screen, above everything.
KeyboardLock::ShowHUD showKeyboardLockHUD(const Look& look, const Screens& screens);

} // namespace quillet
