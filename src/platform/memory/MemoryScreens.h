#pragma once

#include "platform/Screens.h"

namespace quillet {

/// Screens and a pointer wherever a test puts them; one laptop screen to begin with.
class MemoryScreens : public Screens {
public:
    std::vector<Screen> all() const override { return screens; }
    Point mouseLocation() const override { return pointer; }

    /// The user plugs screens in or out.
    void change(std::vector<Screen> connected) {
        screens = std::move(connected);
        notifyObservers();
    }

    std::vector<Screen> screens{
        {1, QStringLiteral("eDP-1"), {{0, 0}, {1440, 900}}, {{0, 0}, {1440, 870}}, 2}};
    Point pointer{720, 450};
};

} // namespace quillet
