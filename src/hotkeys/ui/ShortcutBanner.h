#pragma once

#include "app/look/Animation.h"
#include "hotkeys/ui/ShortcutBannerView.h"
#include "platform/Screens.h"

namespace quillet {

/// Tells the user which shortcuts other programs have, and offers others that are free. Floats at
/// the top right of the screen with the pointer until it is answered, and takes the keyboard only
/// when it is clicked. The same refusal is told once.
class ShortcutBanner {
public:
    ShortcutBanner(ShortcutAlternatives& alternatives, const Look& look, Screens& screens);

    /// Shows itself if there is something that the user does not know yet.
    void showNews();

private:
    void show(std::vector<ShortcutAlternatives::Refusal> refusals, const Screen& screen);
    void answer(bool isAccepted);

    ShortcutAlternatives& m_alternatives;
    Look m_look;
    Screens& m_screens;
    std::unique_ptr<ShortcutBannerView> m_view;
    std::unique_ptr<Panel> m_panel;
    Animation m_fade;
};

} // namespace quillet
