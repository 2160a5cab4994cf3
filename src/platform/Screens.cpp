#include "platform/Screens.h"

#include <algorithm>

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

Screens::Observation Screens::observe(std::function<void()> handler) {
    auto observation = std::make_shared<std::function<void()>>(std::move(handler));
    m_observers.push_back(observation);
    return observation;
}

void Screens::notifyObservers() {
    std::erase_if(m_observers, [](const auto& observer) { return observer.expired(); });
    for (const auto& observer : std::vector(m_observers)) {
        if (const auto handler = observer.lock())
            (*handler)();
    }
}

} // namespace quillet
