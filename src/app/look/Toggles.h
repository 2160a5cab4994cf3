#pragma once

#include "app/look/ControlTracker.h"
#include "app/look/TogglePainting.h"

#include <QCheckBox>
#include <QSlider>

namespace quillet {

/// Turns one thing on and off. The knob glides when the user moves it.
class Switch : public QCheckBox {
    Q_OBJECT

public:
    Switch(const Look& look, const QString& name, QWidget* parent = nullptr,
           SwitchSize size = SwitchSize::regular);

    QSize sizeHint() const override { return switchSize(m_size).toSize(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    void moveKnob(bool isOn);

    Look m_look;
    SwitchSize m_size;
    double m_knob = 0;
    ControlTracker m_tracker;
    Animation m_glide;
};

/// A box to tick, with its label.
class Checkbox : public QCheckBox {
    Q_OBJECT

public:
    Checkbox(const Look& look, const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override { return checkboxSize(text()).toSize(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    Look m_look;
    ControlTracker m_tracker;
};

/// A value on a line. The knob goes where the user presses and follows the pointer.
class Slider : public QSlider {
    Q_OBJECT

public:
    Slider(const Look& look, const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {120, 22}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void follow(double x);

    Look m_look;
    ControlTracker m_tracker;
};

} // namespace quillet
