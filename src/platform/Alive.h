#pragma once

#include <memory>
#include <utility>

namespace quillet {

/// Guards work that may outlive its owner: a function passed through alive() does nothing once the
/// Alive member that wrapped it is destroyed. Declare it last, so that it dies first.
class Alive {
public:
    template<typename Function>
    auto operator()(Function function) const {
        return [token = std::weak_ptr<void>(m_token),
                function = std::move(function)](auto&&... arguments) mutable {
            if (token.lock())
                function(std::forward<decltype(arguments)>(arguments)...);
        };
    }

private:
    std::shared_ptr<void> m_token = std::make_shared<char>();
};

} // namespace quillet
