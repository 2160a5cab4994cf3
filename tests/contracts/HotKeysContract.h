#pragma once

#include "platform/HotKeyService.h"

#include <gmock/gmock.h>

namespace quillet {

/// What every HotKeyService promises. A Backend has
/// - `hotKeys()`;
/// - `takeElsewhere(keyCode, modifiers)`: another program has that combination from then on, on the
///   keyboard layout that is in use at first;
/// - `changeLayout(isFirst)`: to one where its key is elsewhere, or back; all that follows is done;
/// - `press(keyCode, modifiers)`: the user presses and releases it, and all that follows is done.
template<typename Backend>
class HotKeysContract : public testing::Test {
protected:
    static constexpr uint32_t keyV = 9;
    static constexpr uint32_t keyC = 8;
    static constexpr uint32_t commandShift = 0x300;

    HotKeysContract() {
        backend.hotKeys().onPressed = [this](uint32_t id) { pressed.push_back(id); };
    }

    Backend backend;
    std::vector<uint32_t> pressed;
};

TYPED_TEST_SUITE_P(HotKeysContract);

TYPED_TEST_P(HotKeysContract, eachPressIsReportedToWhoeverHasTheCombinationThen) {
    using testing::ElementsAre;
    auto& hotKeys = this->backend.hotKeys();
    auto v = hotKeys.add(this->keyV, this->commandShift, 1);
    const auto c = hotKeys.add(this->keyC, this->commandShift, 2);
    const auto alsoV = hotKeys.add(this->keyV, this->commandShift, 3);
    ASSERT_TRUE(v && c && alsoV);
    this->backend.press(this->keyV, this->commandShift);
    EXPECT_THAT(this->pressed, ElementsAre(1, 3));
    this->backend.press(this->keyC, 0x100);
    EXPECT_THAT(this->pressed, ElementsAre(1, 3));
    v.reset();
    this->backend.press(this->keyV, this->commandShift);
    this->backend.press(this->keyC, this->commandShift);
    EXPECT_THAT(this->pressed, ElementsAre(1, 3, 3, 2));
}

TYPED_TEST_P(HotKeysContract, whatAnotherProgramHasIsRefusedUntilTheLayoutDecidesAnew) {
    auto& hotKeys = this->backend.hotKeys();
    int changes = 0;
    hotKeys.onKeyboardChanged = [&] { ++changes; };
    this->backend.takeElsewhere(this->keyV, this->commandShift);
    EXPECT_EQ(hotKeys.add(this->keyV, this->commandShift, 1), nullptr);
    EXPECT_EQ(hotKeys.add(0xffff'ffff, this->commandShift, 1), nullptr) << "no such key";
    const auto c = hotKeys.add(this->keyC, this->commandShift, 2);
    ASSERT_TRUE(c);

    this->backend.changeLayout(false);
    EXPECT_GT(changes, 0);
    const auto v = hotKeys.add(this->keyV, this->commandShift, 1);
    ASSERT_TRUE(v);
    EXPECT_TRUE(v->isInForce());
    this->backend.changeLayout(true);
    EXPECT_FALSE(v->isInForce());
    EXPECT_TRUE(c->isInForce());
    hotKeys.onKeyboardChanged = nullptr;
}

REGISTER_TYPED_TEST_SUITE_P(HotKeysContract, eachPressIsReportedToWhoeverHasTheCombinationThen,
                            whatAnotherProgramHasIsRefusedUntilTheLayoutDecidesAnew);

} // namespace quillet
