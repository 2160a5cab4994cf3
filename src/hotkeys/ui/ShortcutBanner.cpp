#include "hotkeys/ui/ShortcutBanner.h"

using namespace std::chrono_literals;

namespace quillet {
namespace {

constexpr double fromEdge = 10;
constexpr auto fadeIn = 150ms;
constexpr auto fadeOut = 250ms;
constexpr PanelStyle style{.level = 25,
                           .canBecomeKey = true,
                           .ignoresMouse = false,
                           .margin = ShortcutBannerView::margin,
                           .cornerRadius = ShortcutBannerView::cornerRadius};

} // namespace

ShortcutBanner::ShortcutBanner(ShortcutAlternatives& alternatives, const Look& look,
                               Screens& screens)
    : m_alternatives(alternatives), m_look(look), m_screens(screens), m_fade(look.scheduler) {}

void ShortcutBanner::showNews() {
    const auto screen = m_screens.main();
    if (!screen || !m_alternatives.isNews())
        return;
    m_alternatives.noteTold();
    show(m_alternatives.refusals(), *screen);
}

void ShortcutBanner::show(std::vector<ShortcutAlternatives::Refusal> refusals,
                          const Screen& screen) {
    m_panel.reset();
    m_view = std::make_unique<ShortcutBannerView>(
        m_look, std::move(refusals), [this](bool isAccepted) { answer(isAccepted); },
        [this] { m_panel->makeKeyAndOrderFront(); });
    m_view->setFocus();
    m_panel = m_look.panels.make(*m_view, style);
    const QSizeF card = m_view->cardSize();
    const Rect& usable = screen.visibleFrame;
    m_panel->setFrame(
        {{usable.maxX() - fromEdge - card.width(), usable.maxY() - fromEdge - card.height()},
         {card.width(), card.height()}});
    m_panel->setAlpha(0);
    m_panel->orderFront();
    m_fade.start(Motion::easeOut(fadeIn), [this](double progress) { m_panel->setAlpha(progress); });
}

void ShortcutBanner::answer(bool isAccepted) {
    if (isAccepted)
        m_alternatives.accept();
    m_fade.start(
        Motion::easeOut(fadeOut), [this](double progress) { m_panel->setAlpha(1 - progress); },
        [this] { m_panel->orderOut(); });
}

} // namespace quillet
