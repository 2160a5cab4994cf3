#include "switches/ui/KeyboardLockHUD.h"

#include "app/look/GlassCard.h"
#include "app/look/Shadow.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QPainter>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

constexpr PanelStyle style{.level = 1000,
                           .canBecomeKey = false,
                           .ignoresMouse = false,
                           .margin = KeyboardLockHUD::margin,
                           .cornerRadius = KeyboardLockHUD::cornerRadius};

// From the card's top edge; the lines stand 12 apart.
constexpr QRectF symbolBox{0, 40, 320, 34};
constexpr QRectF titleBox{0, 86, 320, 22};
constexpr QRectF countdownBox{0, 120, 320, 17};
constexpr QRect doneBox{116, 150, 88, 30};
constexpr double symbolFontSize = 57;

constexpr int announcedEvery = 10; // seconds

/// The panel as long as it is on the screen.
struct ShownHUD {
    KeyboardLockHUD view;
    std::unique_ptr<Panel> panel;
};

} // namespace

KeyboardLockHUD::KeyboardLockHUD(const Look& look, HUDState& state, std::function<void()> onDone)
    : m_look(look),
      m_state(state),
      m_done(look, ButtonKind::prominent, tr("Done"), this, ButtonSize::medium) {
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowTitle(tr("Keyboard locked"));
    resize(cardSize + QSize(2 * margin, 2 * margin));
    constexpr int shadow = Button::margin;
    m_done.setGeometry(
        doneBox.translated(margin, margin).adjusted(-shadow, -shadow, shadow, shadow));
    // Queued, because it takes this very button off the screen.
    connect(&m_done, &Button::clicked, qApp, std::move(onDone), Qt::QueuedConnection);
    connect(&state, &HUDState::remainingChanged, this, [this] { showRemaining(); });
    connect(&look.theme, &Theme::changed, this, [this] { update(); });
    showRemaining();
}

QString KeyboardLockHUD::countdown() const {
    return tr("Wipe away — unlocks in %1s").arg(m_state.remaining());
}

void KeyboardLockHUD::showRemaining() {
    update(countdownBox.translated(margin, margin).toAlignedRect());
    const bool isFirst = accessibleName().isEmpty();
    setAccessibleName(tr("Keyboard locked") + u". "_s + countdown());
    if (!isFirst && m_state.remaining() % announcedEvery != 0)
        return;
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void KeyboardLockHUD::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ThemeColors& colors = m_look.colors();
    painter.translate(margin, margin);
    const QRectF card({}, cardSize);
    const bool isTranslucent = m_look.panels.isTranslucent();
    if (isTranslucent)
        paintPanelShadow(painter, card, cornerRadius, colors);
    paintGlassCard(painter, card, cornerRadius, colors, Material::regular,
                   isTranslucent ? Translucency::translucent : Translucency::opaque);
    paintSymbol(painter, symbolBox, u"keyboard"_s, symbolFontSize, colors.primary,
                SymbolWeight::light);
    paintText(painter, titleBox, Qt::AlignCenter, tr("Keyboard locked"), TextStyles::title3,
              colors.primary);
    paintText(painter, countdownBox, Qt::AlignCenter, countdown(), TextStyles::callout.tabular(),
              colors.secondary);
}

KeyboardLock::ShowHUD showKeyboardLockHUD(const Look& look, const Screens& screens) {
    return [look, &screens](HUDState& state, std::function<void()> onDone) {
        const std::shared_ptr<ShownHUD> hud(
            new ShownHUD{{look, state, std::move(onDone)}, nullptr});
        hud->panel = look.panels.make(hud->view, style);
        constexpr double width = KeyboardLockHUD::cardSize.width();
        constexpr double height = KeyboardLockHUD::cardSize.height();
        Point origin;
        if (const auto screen = screens.main())
            origin = {screen->frame.midX() - width / 2, screen->frame.midY() - height / 2};
        hud->panel->setFrame({origin, {width, height}});
        hud->panel->orderFront();
        return KeyboardLock::HUD(hud);
    };
}

} // namespace quillet
