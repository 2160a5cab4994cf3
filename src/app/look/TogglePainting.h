#pragma once

#include "app/look/ControlState.h"
#include "app/look/Theme.h"

#include <QSizeF>
#include <QStringList>
#include <vector>

class QPainter;

namespace quillet {

enum class SwitchSize { small, regular };

struct SwitchLook {
    double knob = 0; ///< 0 off … 1 on; in between while it moves
    SwitchSize size = SwitchSize::regular;
    ControlState state;
};
QSizeF switchSize(SwitchSize size);
void paintSwitch(QPainter& painter, const QRectF& rect, const SwitchLook& look,
                 const ThemeColors& colors);

/// A box with its label after it.
struct CheckboxLook {
    QString text;
    bool isOn = false;
    ControlState state;
};
inline constexpr double checkboxSide = 16;
inline constexpr double checkboxRadius = 5;
QSizeF checkboxSize(const QString& text);
void paintCheckbox(QPainter& painter, const QRectF& rect, const CheckboxLook& look,
                   const ThemeColors& colors);

struct SliderLook {
    double value = 0; ///< 0 … 1
    ControlState state;
};
inline constexpr double sliderKnob = 18;
void paintSlider(QPainter& painter, const QRectF& rect, const SliderLook& look,
                 const ThemeColors& colors);

/// A row of which one part is chosen.
struct SegmentedLook {
    QStringList titles;
    qsizetype chosen = 0;
    qsizetype hovered = -1; ///< negative while the pointer is elsewhere
    ControlState state;
};
QSizeF segmentedSize(const QStringList& titles);
std::vector<QRectF> segmentRects(const QRectF& rect, qsizetype count);
void paintSegmented(QPainter& painter, const QRectF& rect, const SegmentedLook& look,
                    const ThemeColors& colors);

} // namespace quillet
