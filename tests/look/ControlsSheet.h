#pragma once

#include "app/look/Theme.h"

#include <QImage>

namespace quillet {

/// Every control in its states, with toasts, a menu and a tooltip, at two pixels a point.
QImage controlsSheet(const ThemeColors& colors);

} // namespace quillet
