#include "app/look/ControlTracker.h"
#include "app/look/ButtonPainting.h"

#include <QFocusEvent>
#include <QPainter>

using namespace std::chrono_literals;

namespace quillet {
namespace {

constexpr auto groundFade = 100ms;

class FocusRing : public QWidget {
public:
    FocusRing(QWidget* parent, const Look& look, double cornerRadius)
        : QWidget(parent), m_look(look), m_cornerRadius(cornerRadius) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        connect(&look.theme, &Theme::changed, this, [this] { update(); });
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRectF control = QRectF(rect()).adjusted(focusRingReach, focusRingReach,
                                                       -focusRingReach, -focusRingReach);
        paintFocusRing(painter, control, m_cornerRadius, m_look.colors());
    }

private:
    Look m_look;
    double m_cornerRadius;
};

bool isOfKeyboard(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

/// The focus goes with the window, or to a menu, and comes back.
bool isPassing(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
}

} // namespace

ControlTracker::ControlTracker(QWidget& control, const Look& look, double cornerRadius, int margin)
    : m_control(control),
      m_look(look),
      m_cornerRadius(cornerRadius),
      m_margin(margin),
      m_fade(look.scheduler) {
    control.setFocusPolicy(Qt::TabFocus);
    control.installEventFilter(this);
    connect(&look.theme, &Theme::changed, this, [this] { m_control.update(); });
}

ControlTracker::~ControlTracker() {
    delete m_ring;
}

ControlState ControlTracker::state(bool isPressed) const {
    return {m_hover, isPressed, m_control.isEnabled()};
}

bool ControlTracker::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
    case QEvent::Enter:
        fadeHover(1);
        break;
    case QEvent::Leave:
        fadeHover(0);
        break;
    case QEvent::FocusIn:
        takeFocus(static_cast<QFocusEvent*>(event)->reason());
        break;
    case QEvent::FocusOut:
        loseFocus(static_cast<QFocusEvent*>(event)->reason());
        break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
        placeRing();
        break;
    default:
        break;
    }
    return false;
}

void ControlTracker::fadeHover(double target) {
    const double start = m_hover;
    m_fade.start(Motion::easeOut(groundFade), [this, start, target](double progress) {
        m_hover = start + (target - start) * progress;
        m_control.update();
    });
}

void ControlTracker::takeFocus(Qt::FocusReason reason) {
    if (!isPassing(reason))
        m_wasReachedByKeyboard = isOfKeyboard(reason);
    if (!m_wasReachedByKeyboard || m_ring || m_control.isWindow())
        return;
    m_ring = new FocusRing(m_control.parentWidget(), m_look, m_cornerRadius);
    placeRing();
}

void ControlTracker::loseFocus(Qt::FocusReason reason) {
    delete m_ring;
    if (!isPassing(reason))
        m_wasReachedByKeyboard = false;
}

void ControlTracker::placeRing() {
    if (!m_ring)
        return;
    const int reach = static_cast<int>(focusRingReach) - m_margin;
    m_ring->setGeometry(m_control.geometry().adjusted(-reach, -reach, reach, reach));
    m_ring->setVisible(m_control.isVisible());
    m_ring->raise();
}

} // namespace quillet
