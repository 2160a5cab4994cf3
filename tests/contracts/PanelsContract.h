#pragma once

#include "platform/Panels.h"

#include <gtest/gtest.h>
#include <QWidget>

namespace quillet {

/// What every Panels promises. A Backend has
/// - `panels()`;
/// - `clickOutside()`: the user clicks where no panel is, and all that follows is done.
template<typename Backend>
class PanelsContract : public testing::Test {
protected:
    struct Window {
        QWidget content;
        std::unique_ptr<Panel> panel;
        int resigned = 0;
    };

    std::unique_ptr<Window> make(bool canBecomeKey) {
        auto window = std::make_unique<Window>();
        window->panel = backend.panels().make(window->content, {101, canBecomeKey, false, 0, 0});
        window->panel->onResignKey = [&resigned = window->resigned] { ++resigned; };
        window->panel->setFrame({{100, 100}, {300, 200}});
        return window;
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(PanelsContract);

TYPED_TEST_P(PanelsContract, onePanelHasTheKeyboardUntilTheUserTurnsElsewhere) {
    const auto shelf = this->make(true);
    const auto card = this->make(false);
    const auto other = this->make(true);
    EXPECT_FALSE(shelf->panel->isVisible());
    shelf->panel->makeKeyAndOrderFront();
    card->panel->makeKeyAndOrderFront();
    EXPECT_TRUE(shelf->panel->isKey());
    EXPECT_TRUE(card->panel->isVisible());
    EXPECT_FALSE(card->panel->isKey());
    EXPECT_EQ(shelf->resigned, 0);

    other->panel->makeKeyAndOrderFront();
    EXPECT_TRUE(other->panel->isKey());
    EXPECT_FALSE(shelf->panel->isKey());
    EXPECT_EQ(shelf->resigned, 1);
    for (int i = 0; i < 2; ++i) {
        this->backend.clickOutside();
        EXPECT_EQ(other->resigned, 1);
        EXPECT_FALSE(other->panel->isKey());
    }
    EXPECT_TRUE(other->panel->isVisible());

    // Taken off the screen it says nothing.
    shelf->panel->makeKeyAndOrderFront();
    shelf->panel->orderOut();
    EXPECT_FALSE(shelf->panel->isVisible() || shelf->panel->isKey());
    this->backend.clickOutside();
    EXPECT_EQ(shelf->resigned, 1);
}

REGISTER_TYPED_TEST_SUITE_P(PanelsContract, onePanelHasTheKeyboardUntilTheUserTurnsElsewhere);

} // namespace quillet
