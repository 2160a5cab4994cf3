#pragma once

#include "app/look/Theme.h"
#include "platform/Panels.h"
#include "platform/Scheduler.h"

namespace quillet {

/// What every view is given to look and move like the others.
struct Look {
    Theme& theme;
    Scheduler& scheduler;
    Panels& panels;

    const ThemeColors& colors() const { return theme.colors(); }
};

} // namespace quillet
