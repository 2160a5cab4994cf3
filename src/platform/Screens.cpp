#include "platform/Screens.h"

#include <algorithm>

namespace quillet {

std::optional<Screen> screenWith(Point point, const std::vector<Screen>& screens) {
    const auto found = std::ranges::find_if(
        screens, [&](const Screen& screen) { return screen.frame.containsPointer(point); });
    return found == screens.end() ? std::nullopt : std::optional(*found);
}

std::optional<Screen> screenOfPointer(Point pointer, const std::vector<Screen>& screens) {
    const auto found = screenWith(pointer, screens);
    return found || screens.empty() ? found : std::optional(screens.front());
}

std::optional<Screen> Screens::main() const {
    return screenOfPointer(mouseLocation(), all());
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
