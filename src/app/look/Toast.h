#pragma once

#include "app/look/Animation.h"
#include "app/look/Look.h"
#include "app/look/ToastView.h"
#include "platform/Screens.h"

#include <memory>
#include <QWidget>

namespace quillet {

/// A short message near the bottom of the screen with the pointer, for actions that have no window
/// of their own. One panel serves every message: a new one replaces the old at once and starts the
/// wait anew. Clicks go through it, and it never takes the keyboard.
class Toast {
public:
    Toast(const Look& look, Screens& screens);
    ~Toast();

    void show(const QString& text, const QString& symbol, std::optional<QColor> swatch = {});

private:
    class View;

    void makePanel();
    void place(const Screen& screen, const QSizeF& fitting);
    void fade(double target, Scheduler::Duration duration, std::function<void()> done = {});
    void hide();

    Look m_look;
    Screens& m_screens;
    std::unique_ptr<View> m_view;
    std::unique_ptr<Panel> m_panel;
    Animation m_fade;
    std::unique_ptr<Timer> m_hide;
};

} // namespace quillet
