#include "platform/Screens.h"

namespace quillet {

std::optional<Screen> Screens::main() const {
    const std::vector<Screen> screens = all();
    if (screens.empty())
        return std::nullopt;
    const Point pointer = mouseLocation();
    const auto under = std::find_if(screens.begin(), screens.end(), [&](const Screen& screen) {
        return screen.frame.containsPointer(pointer);
    });
    return under != screens.end() ? *under : screens.front();
}

} // namespace quillet
