#pragma once

#include "app/look/Theme.h"

#include <QString>

class QPainter;

namespace quillet {

inline constexpr double menuRadius = 10;
inline constexpr double menuPadding = 5;
inline constexpr double menuRowHeight = 26;
inline constexpr double menuSeparatorHeight = 9;

/// Whether a menu has rows that can be checked; then all of them start further in.
enum class CheckColumn { absent, present };

struct MenuRowLook {
    QString text;
    CheckColumn checkColumn = CheckColumn::absent;
    bool isChecked = false;
    bool isSelected = false; ///< under the pointer or the keyboard
    bool isDestructive = false;
    bool isEnabled = true;
};

double menuRowWidth(const QString& text, CheckColumn checkColumn);
void paintMenuRow(QPainter& painter, const QRectF& rect, const MenuRowLook& look,
                  const ThemeColors& colors);
void paintMenuSeparator(QPainter& painter, const QRectF& rect, const ThemeColors& colors);

} // namespace quillet
