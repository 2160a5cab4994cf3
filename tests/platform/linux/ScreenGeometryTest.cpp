#include "platform/linux/x11/ScreenGeometry.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

MonitorPixels monitor(const QString& name, int x, int y, int width, int height, double scale,
                      bool primary = false) {
    return {name, x, y, width, height, x, y, width, height, scale, primary};
}

TEST(ScreenGeometry, thePrimaryScreenComesFirstAndItsBottomLeftIsTheOrigin) {
    const ScreenGeometry geometry(
        {monitor(u"R"_s, 1920, 0, 1920, 1080, 1.5), monitor(u"L"_s, 0, 500, 1920, 1080, 1, true)});
    const auto screens = geometry.screens();
    ASSERT_EQ(screens.size(), 2u);
    EXPECT_EQ(screens[0].name, u"L");
    EXPECT_EQ(screens[0].frame, (Rect{{0, 0}, {1920, 1080}}));
    // The right one begins 500 points above the left one's top and is 720 points high.
    EXPECT_EQ(screens[1].frame, (Rect{{1920, 860}, {1280, 720}}));
    EXPECT_EQ(screens[1].backingScale, 1.5);
}

TEST(ScreenGeometry, pixelsAreMeasuredWithinTheMonitorThatHoldsMostOfThem) {
    const ScreenGeometry geometry(
        {monitor(u"L"_s, 0, 0, 3840, 2160, 2, true), monitor(u"R"_s, 3840, 1080, 1920, 1080, 1)});
    EXPECT_EQ(geometry.pointAt(3839, 2159), (Point{1919.5, 0.5}));
    EXPECT_EQ(geometry.pointAt(3840, 1080), (Point{3840, 0}));
    struct Row {
        PixelRect pixels;
        Rect points;
    };
    for (const Row& row : {Row{{0, 0, 3840, 2160}, {{0, 0}, {1920, 1080}}},
                           Row{{3801, 1180, 1000, 500}, {{3801, -600}, {1000, 500}}},
                           Row{{3000, 1180, 1000, 500}, {{1500, 240}, {500, 250}}},
                           Row{{5000, -400, 100, 200}, {{2500, 1180}, {50, 100}}}}) { // on none
        EXPECT_EQ(geometry.rectOf(row.pixels), row.points);
        EXPECT_EQ(geometry.pixelsOf(geometry.rectOf(row.pixels)), row.pixels);
    }
}

TEST(ScreenGeometry, aPanelTakesRoomFromTheMonitorItStandsOnUnlessNothingWouldBeLeft) {
    std::vector monitors = {monitor(u"L"_s, 0, 0, 1440, 900, 1, true),
                            monitor(u"R"_s, 1440, 0, 1440, 1000, 1)};
    Strut dock;
    dock.bottom = 130; // 30 high on the left monitor, whose bottom is 100 above the root's
    dock.bottomEnd = 1439;
    applyStruts(monitors, {dock}, 2880, 1000);
    EXPECT_EQ(monitors[1].workHeight, 1000);
    EXPECT_EQ(ScreenGeometry(monitors).screens()[0].visibleFrame, (Rect{{0, 30}, {1440, 870}}));

    monitors = {monitor(u"A"_s, 0, 0, 1000, 500, 1, true), monitor(u"B"_s, 0, 500, 1000, 500, 1)};
    Strut top;
    top.top = 540; // a panel at the top of the lower monitor
    top.topEnd = 999;
    applyStruts(monitors, {top}, 1000, 1000);
    EXPECT_EQ(monitors[0].workHeight, 500);
    EXPECT_EQ(monitors[1].workY, 540);
    EXPECT_EQ(monitors[1].workHeight, 460);
}

TEST(ScreenGeometry, aMonitorTakesTheWorkAreaThatLiesInIt) {
    std::vector monitors = {monitor(u"L"_s, 0, 0, 1000, 500, 1, true),
                            monitor(u"R"_s, 1000, 0, 1000, 600, 1),
                            monitor(u"T"_s, 0, 500, 1000, 400, 1)};
    applyWorkAreas(monitors, {{}, {1000, 30, 1000, 570}, {0, 30, 1000, 470}, {0, 400, 1000, 300}});
    const auto screens = ScreenGeometry(monitors).screens();
    EXPECT_EQ(screens[0].visibleFrame, (Rect{{0, 0}, {1000, 470}}));
    EXPECT_EQ(screens[1].visibleFrame, (Rect{{1000, -100}, {1000, 570}}));
    EXPECT_EQ(screens[2].visibleFrame, screens[2].frame); // one that spans monitors is nobody's
}

} // namespace
} // namespace quillet
