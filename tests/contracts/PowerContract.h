#pragma once

#include "platform/Power.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every Power promises. A Backend has
/// - `power()`;
/// - `takeAbilityAway()`: from now on nobody here can keep the machine awake;
/// - `holders()`: how many assertions the desktop knows of, once it has heard of all;
/// - `loseAll()`: the desktop takes back what is held, and time enough passes for it to be noticed.
template<typename Backend>
class PowerContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(PowerContract);

TYPED_TEST_P(PowerContract, anAssertionHoldsUntilItIsDestroyedWhereSomebodyCanHoldIt) {
    Power& power = this->backend.power();
    for (const auto type : {Power::AssertionType::preventUserIdleDisplaySleep,
                            Power::AssertionType::preventUserIdleSystemSleep}) {
        auto first = power.assertion(type, QStringLiteral("first"));
        auto second = power.assertion(type, QStringLiteral("second"));
        ASSERT_TRUE(first && second);
        EXPECT_EQ(this->backend.holders(), 2);
        first.reset();
        EXPECT_EQ(this->backend.holders(), 1);
        second.reset();
        EXPECT_EQ(this->backend.holders(), 0);
    }
    this->backend.takeAbilityAway();
    EXPECT_EQ(power.assertion(Power::AssertionType::preventUserIdleSystemSleep, {}), nullptr);
}

TYPED_TEST_P(PowerContract, aLossIsToldOnceAndMayDestroyTheAssertion) {
    Power& power = this->backend.power();
    int losses = 0;
    auto kept = power.assertion(Power::AssertionType::preventUserIdleSystemSleep, {});
    auto destroyed = power.assertion(Power::AssertionType::preventUserIdleSystemSleep, {});
    ASSERT_TRUE(kept && destroyed);
    kept->onLost = [&] { ++losses; };
    destroyed->onLost = [&] {
        ++losses;
        destroyed.reset();
    };
    EXPECT_EQ(this->backend.holders(), 2);
    EXPECT_EQ(losses, 0);
    for (int i = 0; i < 2; ++i) {
        this->backend.loseAll();
        EXPECT_EQ(losses, 2);
    }
    EXPECT_EQ(destroyed, nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(PowerContract, anAssertionHoldsUntilItIsDestroyedWhereSomebodyCanHoldIt,
                            aLossIsToldOnceAndMayDestroyTheAssertion);

} // namespace quillet
