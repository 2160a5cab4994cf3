#include "app/look/Toggles.h"

#include <cmath>
#include <QMouseEvent>
#include <QPainter>

using namespace std::chrono_literals;

namespace quillet {

Switch::Switch(const Look& look, const QString& name, QWidget* parent, SwitchSize size)
    : QCheckBox(parent),
      m_look(look),
      m_size(size),
      m_tracker(*this, look, switchSize(size).height() / 2),
      m_glide(look.scheduler) {
    setAccessibleName(name);
    connect(this, &QCheckBox::toggled, this, &Switch::moveKnob);
}

void Switch::moveKnob(bool isOn) {
    const double target = isOn ? 1 : 0;
    if (!isVisible()) {
        m_knob = target;
        return;
    }
    const double start = m_knob;
    m_glide.start(Motion::easeOut(160ms), [this, start, target](double progress) {
        m_knob = start + (target - start) * progress;
        update();
    });
}

void Switch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintSwitch(painter, rect(), {m_knob, m_size, m_tracker.state(isDown())}, m_look.colors());
}

Checkbox::Checkbox(const Look& look, const QString& text, QWidget* parent)
    : QCheckBox(text, parent), m_look(look), m_tracker(*this, look, checkboxRadius) {}

void Checkbox::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintCheckbox(painter, rect(), {text(), isChecked(), m_tracker.state(isDown())},
                  m_look.colors());
}

Slider::Slider(const Look& look, const QString& name, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), m_look(look), m_tracker(*this, look, sliderKnob / 2) {
    setAccessibleName(name);
}

void Slider::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const int range = maximum() - minimum();
    const double share = range > 0 ? static_cast<double>(value() - minimum()) / range : 0;
    paintSlider(painter, rect(), {share, m_tracker.state(isSliderDown())}, m_look.colors());
}

void Slider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    setSliderDown(true);
    follow(event->position().x());
}

void Slider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown())
        follow(event->position().x());
}

void Slider::mouseReleaseEvent(QMouseEvent*) {
    setSliderDown(false);
}

void Slider::follow(double x) {
    const double way = width() - sliderKnob;
    const double share = way > 0 ? std::clamp((x - sliderKnob / 2) / way, 0.0, 1.0) : 0;
    setValue(minimum() + static_cast<int>(std::lround(share * (maximum() - minimum()))));
}

} // namespace quillet
