#include "app/look/Toast.h"

#include <QAccessible>
#include <QPainter>

using namespace std::chrono_literals;

namespace quillet {
namespace {

constexpr PanelStyle style{.level = 25,
                           .canBecomeKey = false,
                           .ignoresMouse = true,
                           .margin = ToastView::margin,
                           .cornerRadius = ToastView::cornerRadius};
constexpr double aboveBottom = 90;
constexpr auto fadeIn = 150ms;
constexpr auto shown = 1600ms;
constexpr auto fadeOut = 250ms;

} // namespace

/// What the panel shows.
class Toast::View : public QWidget {
public:
    explicit View(const Look& look) : m_look(look) {
        setAttribute(Qt::WA_TranslucentBackground);
        connect(&look.theme, &Theme::changed, this, [this] { update(); });
    }

    void setMessage(ToastView message) {
        m_message = std::move(message);
        setAccessibleName(m_message.text);
        update();
    }

    void announce() {
        QAccessibleEvent event(this, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const double margin = ToastView::margin;
        m_message.paint(
            painter, QRectF(rect()).adjusted(margin, margin, -margin, -margin), m_look.colors(),
            m_look.panels.isTranslucent() ? Translucency::translucent : Translucency::opaque);
    }

private:
    Look m_look;
    ToastView m_message;
};

Toast::Toast(const Look& look, Screens& screens)
    : m_look(look), m_screens(screens), m_fade(look.scheduler) {}

Toast::~Toast() = default;

void Toast::show(const QString& text, const QString& symbol, std::optional<QColor> swatch) {
    const auto screen = m_screens.main();
    if (!screen)
        return;
    if (!m_panel)
        makePanel();
    const ToastView message{text, symbol, swatch};
    m_view->setMessage(message);
    place(*screen, message.size());
    m_panel->setAlpha(0);
    m_panel->orderFront();
    m_view->announce();
    // Starting it ends the fade of an older message, so that nothing hides this one early.
    fade(1, fadeIn);
    m_hide = m_look.scheduler.after(shown, [this] { hide(); });
}

void Toast::makePanel() {
    m_view = std::make_unique<View>(m_look);
    m_panel = m_look.panels.make(*m_view, style);
}

void Toast::place(const Screen& screen, const QSizeF& fitting) {
    const Rect& usable = screen.visibleFrame;
    const double margin = ToastView::margin;
    const double width = std::min(fitting.width(), usable.size.width - 2 * margin);
    m_panel->setFrame({{usable.midX() - width / 2, usable.minY() + aboveBottom + margin},
                       {width, fitting.height()}});
}

void Toast::fade(double target, Scheduler::Duration duration, std::function<void()> done) {
    const double start = m_panel->alpha();
    m_fade.start(
        Motion::easeOut(duration),
        [this, start, target](double progress) {
            m_panel->setAlpha(start + (target - start) * progress);
        },
        std::move(done));
}

void Toast::hide() {
    fade(0, fadeOut, [this] { m_panel->orderOut(); });
}

} // namespace quillet
