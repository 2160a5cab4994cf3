#pragma once

#include "platform/KeyboardGrab.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every KeyboardGrab promises. A Backend has
/// - `keyboard()`;
/// - `takeElsewhere()`, `giveBackElsewhere()`: another program holds the keyboard meanwhile;
/// - `keysReachPrograms()`: the user presses and releases a key; whether a program saw any of it.
template<typename Backend>
class KeyboardGrabContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(KeyboardGrabContract);

TYPED_TEST_P(KeyboardGrabContract, keysReachNobodyWhileItIsHeldAndOnlyOneHoldsIt) {
    KeyboardGrab& keyboard = this->backend.keyboard();
    EXPECT_TRUE(this->backend.keysReachPrograms());
    auto hold = keyboard.hold();
    ASSERT_NE(hold, nullptr);
    EXPECT_EQ(keyboard.hold(), nullptr);
    EXPECT_FALSE(this->backend.keysReachPrograms());
    hold.reset();
    EXPECT_TRUE(this->backend.keysReachPrograms());

    this->backend.takeElsewhere();
    EXPECT_EQ(keyboard.hold(), nullptr);
    this->backend.giveBackElsewhere();
    EXPECT_TRUE(this->backend.keysReachPrograms()) << "the failure left nothing behind";
    EXPECT_NE(keyboard.hold(), nullptr);
}

REGISTER_TYPED_TEST_SUITE_P(KeyboardGrabContract, keysReachNobodyWhileItIsHeldAndOnlyOneHoldsIt);

} // namespace quillet
