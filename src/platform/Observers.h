#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace quillet {

/// Those who want to hear of a change. One that is told may observe, let go, or cause a change.
class Observers {
public:
    /// Ends its observation when destroyed.
    using Observation = std::shared_ptr<void>;

    [[nodiscard]] Observation add(std::function<void()> handler) {
        Observation observation = std::make_shared<char>();
        m_observers.push_back({observation, std::move(handler)});
        return observation;
    }

    void notify() {
        const auto ended = [](const Observer& observer) { return observer.observation.expired(); };
        std::erase_if(m_observers, ended);
        const auto observers = m_observers;
        for (const Observer& observer : observers) {
            if (!ended(observer))
                observer.handler();
        }
    }

private:
    struct Observer {
        std::weak_ptr<void> observation;
        std::function<void()> handler;
    };

    std::vector<Observer> m_observers;
};

} // namespace quillet
