#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QObject>
#include <QRectF>

namespace quillet {

enum class Appearance { light, dark };

/// The colours of one appearance. Painting takes nothing else to know it.
struct ThemeColors {
    Appearance appearance;
    QColor accentText;     ///< accent that can be read as text; also the focus ring
    QColor primary;        ///< text
    QColor secondary;      ///< subtitles, notes, footers
    QColor tertiary;       ///< placeholders
    QColor window;         ///< ground of ordinary windows
    QColor group;          ///< form groups
    QColor textBackground; ///< ground of the user's own text
    QColor field;          ///< text field, checkbox that is off
    QColor control;        ///< regular button, picker, key cap
    QColor controlBorder;  ///< their edge
    QColor keyCapBorder;   ///< the key cap's edge
    QColor chosenSegment;  ///< ground of the chosen part of a segmented control
    QColor material;       ///< small floating panels
    QColor thickMaterial;  ///< large floating panels and menus
    QColor frameMaterial;  ///< frame around pictures
    QColor cardFill;       ///< tiles, chips
    QColor cardStroke;     ///< their edge
    QColor separator;      ///<
    QColor trackOff;       ///< switch that is off, rest of a slider
    QColor orangeText;     ///< warnings
    QColor redText;        ///< destructive
    QColor greenText;      ///< "On"

    bool isDark() const { return appearance == Appearance::dark; }

    /// The text colour at an opacity: grounds of hovered, pressed and chosen things.
    QColor primaryAt(double opacity) const;
};

/// The look's colours: a palette that never changes, and tokens that follow the appearance.
/// Whoever shows something repaints at changed().
class Theme : public QObject {
    Q_OBJECT

public:
    static constexpr QColor accent{110, 91, 255};
    static constexpr QColor accentHover{99, 80, 244};
    static constexpr QColor accentPressed{85, 67, 222};
    static constexpr QColor accentGradientEnd{180, 92, 255};
    static constexpr QColor cpu{52, 199, 89};
    static constexpr QColor memory{10, 132, 255};
    static constexpr QColor network{255, 159, 10};
    static constexpr QColor battery{48, 209, 88};
    static constexpr QColor lowBattery{255, 59, 48};

    /// From the top leading to the bottom trailing corner.
    static QLinearGradient accentGradient(const QRectF& rect);

    static const ThemeColors& colors(Appearance appearance);

    Appearance appearance() const { return m_appearance; }
    void setAppearance(Appearance appearance);

    const ThemeColors& colors() const { return colors(m_appearance); }

Q_SIGNALS:
    void changed();

private:
    Appearance m_appearance = Appearance::light;
};

/// A colour at another opacity.
QColor withAlpha(QColor color, double opacity);

/// The colour between two, at `share` of the way.
QColor mixed(const QColor& from, const QColor& to, double share);

} // namespace quillet
