#include "platform/memory/MemoryPower.h"

#include <algorithm>
#include <utility>

namespace quillet {

class MemoryPower::MemoryAssertion : public Assertion {
public:
    MemoryAssertion(MemoryPower& power, Taken what) : taken(std::move(what)), m_power(power) {
        m_power.m_held.push_back(this);
        m_power.mostHeld = std::max(m_power.mostHeld, m_power.m_held.size());
    }
    ~MemoryAssertion() override { std::erase(m_power.m_held, this); }

    const Taken taken;

private:
    MemoryPower& m_power;
};

std::unique_ptr<Power::Assertion> MemoryPower::assertion(AssertionType type, const QString& name) {
    if (!isAvailable)
        return nullptr;
    return std::make_unique<MemoryAssertion>(*this, Taken{type, name});
}

std::vector<MemoryPower::Taken> MemoryPower::held() const {
    std::vector<Taken> result;
    for (const MemoryAssertion* assertion : m_held)
        result.push_back(assertion->taken);
    return result;
}

void MemoryPower::loseAll() {
    while (!m_held.empty()) {
        MemoryAssertion* assertion = m_held.front();
        m_held.erase(m_held.begin());
        // Whoever hears of the loss may destroy it.
        if (const auto lost = std::exchange(assertion->onLost, {}))
            lost();
    }
}

} // namespace quillet
