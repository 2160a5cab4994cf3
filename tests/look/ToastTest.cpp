#include "app/look/Toast.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryScreens.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ToastTest : public testing::Test {
protected:
    const MemoryPanel& panel() const { return *panels.all().front(); }

    Theme theme;
    MemoryScheduler scheduler;
    MemoryPanels panels;
    MemoryScreens screens;
    Toast toast{{theme, scheduler, panels}, screens};
};

TEST_F(ToastTest, aMessageFadesInStaysAndFadesOutUnlessANewOneTakesItsPlace) {
    toast.show(u"First"_s, u"photo"_s);
    EXPECT_EQ(panel().alpha(), 0);
    scheduler.advance(500ms);
    toast.show(u"Second"_s, u"photo"_s);
    scheduler.advance(1590ms);
    EXPECT_EQ(panel().alpha(), 1);
    scheduler.advance(100ms); // in the midst of its fade
    EXPECT_LT(panel().alpha(), 1);
    toast.show(u"Third"_s, u"photo"_s);
    scheduler.advance(1590ms);
    EXPECT_TRUE(panel().isVisible()) << "hidden by the fade of the message before";
    EXPECT_EQ(panel().alpha(), 1);
    EXPECT_EQ(panel().content.accessibleName(), u"Third"_s);
    scheduler.advance(300ms);
    EXPECT_FALSE(panel().isVisible());
    EXPECT_TRUE(scheduler.isIdle());
}

TEST_F(ToastTest, itStandsOnThePointersScreenAndLeavesTheKeyboardAndClicksAlone) {
    screens.screens.push_back(
        {2, u"DP-1"_s, {{1440, 100}, {1920, 1080}}, {{1440, 140}, {1920, 1010}}, 1});
    screens.pointer = {3000, 900};
    toast.show(u"#FF8000 copied"_s, {}, QColor(255, 128, 0));
    EXPECT_EQ(panel().frame().midX(), 2400);
    EXPECT_EQ(panel().frame().minY(), 140 + 90 + panel().style.margin);
    EXPECT_TRUE(panel().style.ignoresMouse);
    EXPECT_FALSE(panel().style.canBecomeKey);
    toast.show(QString(100'000, u'W'), {}, {});
    EXPECT_LE(panel().frame().size.width + 2 * panel().style.margin, 1920);
}

} // namespace quillet
