#pragma once

#include "hotkeys/HotKeyCenter.h"
#include "settings/ui/PermissionCard.h"
#include "settings/ui/ShortcutHint.h"

#include <array>
#include <optional>

namespace quillet {

/// What a new user sees first: a welcome, the two permissions with the way to each, the three most
/// useful shortcuts, and a button to be done with it, which Return presses wherever the keyboard
/// is. Keeps the permissions' state fresh while it is shown. Any free place moves the window. Its
/// minimum height is what it needs at the moment.
class SetupView : public QWidget {
    Q_OBJECT

public:
    static constexpr QSize windowSize{560, 640};

    SetupView(const Look& look, Permissions& permissions, HotKeyCenter& hotKeys,
              std::function<void()> onDone);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent*) override { place(); }
    void paintEvent(QPaintEvent* event) override;

private:
    void showPermissions();
    void showShortcuts();
    void place();

    Look m_look;
    Permissions& m_permissions;
    HotKeyCenter& m_hotKeys;
    std::function<void()> m_onDone;
    std::array<PermissionCard, 2> m_cards;
    std::array<ShortcutHint, 3> m_hints;
    Button m_done;
    /// Where on the screen a free place was pressed, until the window moves or at the release.
    std::optional<QPointF> m_pressed;
    int m_markTop = 0;
    int m_headingTop = 0;
    int m_hintsTop = 0;
};

} // namespace quillet
