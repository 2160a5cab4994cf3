#pragma once

#include "platform/Screens.h"

#include <gtest/gtest.h>
#include <set>

namespace quillet {

/// What every Screens promises. A Backend has `screens()`, with at least one screen, and
/// `movePointer(point)` in desktop points.
template<typename Backend>
class ScreensContract : public testing::Test {
protected:
    Backend backend;
};

TYPED_TEST_SUITE_P(ScreensContract);

TYPED_TEST_P(ScreensContract, screensAreDistinctAndTheMainOneIsTheOneWithThePointer) {
    const std::vector<Screen> screens = this->backend.screens().all();
    ASSERT_FALSE(screens.empty());
    EXPECT_EQ(screens.front().frame.origin, Point{});
    std::set<int> numbers;
    for (const Screen& screen : screens) {
        EXPECT_FALSE(screen.visibleFrame.isEmpty());
        EXPECT_EQ(screen.frame.intersection(screen.visibleFrame), screen.visibleFrame);
        EXPECT_GT(screen.backingScale, 0);
        EXPECT_FALSE(screen.name.isEmpty());
        EXPECT_TRUE(numbers.insert(screen.number).second);

        const Point centre{screen.frame.midX(), screen.frame.midY()};
        this->backend.movePointer(centre);
        EXPECT_NEAR(this->backend.screens().mouseLocation().x, centre.x, 1);
        EXPECT_NEAR(this->backend.screens().mouseLocation().y, centre.y, 1);
        EXPECT_EQ(this->backend.screens().main(), screen);
    }
}

REGISTER_TYPED_TEST_SUITE_P(ScreensContract, screensAreDistinctAndTheMainOneIsTheOneWithThePointer);

} // namespace quillet
