#pragma once

#include "app/look/Animation.h"
#include "app/look/ControlState.h"
#include "app/look/Look.h"

#include <QPointer>
#include <QWidget>

namespace quillet {

/// What all controls do alike, as a member of each: fade the ground under the pointer, show a ring
/// around the control while the keyboard has moved the focus there, and repaint when the theme
/// changes. A click leaves the focus where it is, so that one goes on typing. The ring is a sibling
/// of the control, since it lies outside of it.
class ControlTracker : public QObject {
    Q_OBJECT

public:
    /// `margin` is what the widget is larger than the control, on each side.
    ControlTracker(QWidget& control, const Look& look, double cornerRadius, int margin = 0);
    ~ControlTracker() override;

    ControlState state(bool isPressed) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fadeHover(double target);
    void takeFocus(Qt::FocusReason reason);
    void loseFocus(Qt::FocusReason reason);
    void placeRing();

    QWidget& m_control;
    Look m_look;
    double m_cornerRadius;
    int m_margin;
    double m_hover = 0;
    bool m_wasReachedByKeyboard = false;
    QPointer<QWidget> m_ring;
    Animation m_fade;
};

} // namespace quillet
