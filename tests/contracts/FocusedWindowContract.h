#pragma once

#include "platform/FocusedWindow.h"

#include <gtest/gtest.h>

namespace quillet {

/// What every FocusedWindow promises. A Backend has
/// - `windows()`, on a desktop without any window yet;
/// - `open(frame)`: a window opens, roughly there, and gets the focus;
/// - `close()`: it is gone;
/// - `waitFor(condition)`: gives all that is under way the time to arrive; whether it did.
template<typename Backend>
class FocusedWindowContract : public testing::Test {
protected:
    using Identity = FocusedWindow::Identity;

    Identity openWindow() {
        backend.open({{60, 80}, {400, 300}});
        EXPECT_TRUE(backend.waitFor([&] { return backend.windows().identity().has_value(); }));
        return backend.windows().identity().value_or(0);
    }

    auto noteTo(std::vector<std::optional<Rect>>& reports) {
        return [&reports](const std::optional<Rect>& frame) { reports.push_back(frame); };
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(FocusedWindowContract);

TYPED_TEST_P(FocusedWindowContract, aWindowComesWhereItIsAskedToAndSaysSoOnce) {
    FocusedWindow& windows = this->backend.windows();
    const auto window = this->openWindow();
    const Rect place{{200, 150}, {640, 480}};
    std::vector<std::optional<Rect>> replaced;
    std::vector<std::optional<Rect>> reports;
    windows.whenSettled(window, this->noteTo(replaced));
    windows.setSize(window, place.size);
    windows.setTopLeft(window, place.origin);
    windows.whenSettled(window, this->noteTo(reports));
    EXPECT_TRUE(reports.empty());
    EXPECT_TRUE(this->backend.waitFor([&] { return !reports.empty(); }));
    EXPECT_EQ(reports, std::vector{std::optional(place)});
    EXPECT_TRUE(replaced.empty());
    EXPECT_EQ(windows.topLeftFrame(window), place);

    // One wish alone leaves the rest as it is; no wish is settled, too.
    windows.setTopLeft(window, {10, 20});
    windows.whenSettled(window, this->noteTo(reports));
    EXPECT_TRUE(this->backend.waitFor([&] { return reports.size() == 2; }));
    EXPECT_EQ(reports.back(), (Rect{{10, 20}, place.size}));
    windows.whenSettled(window, this->noteTo(reports));
    EXPECT_TRUE(this->backend.waitFor([&] { return reports.size() == 3; }));
    EXPECT_EQ(reports.back(), reports[1]);
}

TYPED_TEST_P(FocusedWindowContract,
             aWindowLeavesWhatItFillsBeforeItMovesAndFillsItAgainAfterwards) {
    FocusedWindow& windows = this->backend.windows();
    const auto window = this->openWindow();
    const Rect place{{200, 150}, {640, 480}};
    std::vector<std::optional<Rect>> reports;
    for (const WindowFill& fill : {WindowFill{true, true, false}, WindowFill{false, true, false},
                                   WindowFill{false, false, true}, WindowFill{}}) {
        windows.setSize(window, place.size);
        windows.setTopLeft(window, place.origin);
        windows.setFill(window, fill);
        reports.clear();
        windows.whenSettled(window, this->noteTo(reports));
        EXPECT_TRUE(this->backend.waitFor([&] { return !reports.empty(); }));
        EXPECT_EQ(windows.fill(window), fill);
    }
    EXPECT_EQ(reports.back(), place);
    this->backend.close();
    EXPECT_TRUE(this->backend.waitFor([&] { return !windows.identity(); }));
    EXPECT_EQ(windows.fill(window), WindowFill{});
}

TYPED_TEST_P(FocusedWindowContract, aClosedWindowHasNoFrame) {
    FocusedWindow& windows = this->backend.windows();
    const auto window = this->openWindow();
    std::vector<std::optional<Rect>> reports;
    windows.setSize(window, {640, 480});
    windows.whenSettled(window, this->noteTo(reports));
    this->backend.close();
    EXPECT_TRUE(this->backend.waitFor([&] { return !reports.empty(); }));
    EXPECT_EQ(windows.topLeftFrame(window), std::nullopt);
    EXPECT_TRUE(this->backend.waitFor([&] { return !windows.identity(); }));
    windows.setTopLeft(window, {10, 20});
    windows.whenSettled(window, this->noteTo(reports));
    EXPECT_TRUE(this->backend.waitFor([&] { return reports.size() == 2; }));
    EXPECT_EQ(reports, std::vector(2, std::optional<Rect>()));
}

REGISTER_TYPED_TEST_SUITE_P(FocusedWindowContract, aWindowComesWhereItIsAskedToAndSaysSoOnce,
                            aWindowLeavesWhatItFillsBeforeItMovesAndFillsItAgainAfterwards,
                            aClosedWindowHasNoFrame);

} // namespace quillet
