#include "hotkeys/WindowSnapper.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryFocusedWindow.h"
#include "platform/memory/MemoryScheduler.h"
#include "platform/memory/MemoryScreens.h"
#include "platform/memory/MemoryWorkspace.h"

#include <gtest/gtest.h>

namespace quillet {

// How failed expectations show rectangles.
void PrintTo(const Rect& rect, std::ostream* out) {
    *out << rect.minX() << ',' << rect.minY() << ' ' << rect.size.width << 'x' << rect.size.height;
}

namespace {

using namespace Qt::StringLiterals;
using Position = SnapPosition;

Rect target(Position position, const Rect& visible, const Size& window, double fraction) {
    return snapTarget(row(position), visible, window, fraction);
}

TEST(SnapPosition, everyPositionHasItsPartOfTheUsableArea) {
    const Rect visible{{0, 25}, {1440, 900}};
    const Size window{501, 400};
    struct Row {
        Position position;
        double fraction;
        Rect expected;
    };
    for (const Row& row : {Row{Position::left, 2.0 / 3, {{0, 25}, {960, 900}}},
                           Row{Position::right, 2.0 / 3, {{480, 25}, {960, 900}}},
                           Row{Position::top, 1.0 / 3, {{0, 25}, {1440, 300}}},
                           Row{Position::bottom, 1.0 / 3, {{0, 625}, {1440, 300}}},
                           Row{Position::maximize, 0.5, visible},
                           Row{Position::center, 0.5, {{469, 275}, {502, 400}}}}) {
        EXPECT_EQ(target(row.position, visible, window, row.fraction), row.expected);
    }
    // Whole points grow outwards.
    const Rect odd{{-1000, 10}, {1000, 700}};
    EXPECT_EQ(target(Position::right, odd, window, 1.0 / 3), (Rect{{-334, 10}, {334, 700}}));
    EXPECT_EQ(target(Position::center, odd, {2000, 900}, 0.5), odd);
}

class WindowSnapperTest : public testing::Test {
protected:
    WindowSnapperTest() {
        screens.screens = {{7, u"P"_s, {{0, 0}, {1440, 925}}, {{0, 0}, {1440, 900}}, 1}};
    }

    /// The window's frame after a snap has run its course.
    Rect snap(Position position) {
        snapper.snap(position);
        return settle();
    }
    Rect settle() {
        scheduler.advance(std::chrono::seconds(1));
        return windows.topLeftFrame(window).value_or(Rect{});
    }
    MemoryFocusedWindow::Window& manners() { return windows.window(window); }

    MemoryScheduler scheduler;
    MemoryAccess access;
    MemoryCommands commands{scheduler};
    MemoryScreens screens;
    MemoryWorkspace workspace;
    MemoryFocusedWindow windows{scheduler};
    Permissions permissions{{access, workspace, commands, scheduler}, {}};
    int guides = 0;
    WindowSnapper snapper{{permissions, windows, screens, workspace}, [this] { ++guides; }};
    FocusedWindow::Identity window = windows.open({{100, 100}, {500, 400}});
};

TEST_F(WindowSnapperTest, theSameSideOfTheSameWindowGoesOnToTheNextFraction) {
    for (const double width : {720, 960, 480, 720})
        EXPECT_EQ(snap(Position::left), (Rect{{0, 25}, {width, 900}}));
    for (const Position other : {Position::right, Position::maximize, Position::center}) {
        snap(other);
        EXPECT_EQ(snap(Position::left).size.width, 720);
    }
    EXPECT_EQ(snap(Position::left).size.width, 960);
    snap(Position::maximize);
    EXPECT_EQ(snap(Position::maximize), (Rect{{0, 25}, {1440, 900}}));

    const auto first = window;
    snap(Position::top);
    window = windows.open({{10, 10}, {300, 300}});
    EXPECT_EQ(snap(Position::top).size.height, 450);
    windows.focus(window = first);
    EXPECT_EQ(snap(Position::top).size.height, 450);
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(WindowSnapperTest, theScreenIsTheOneThatHoldsTheCentreOfTheWindow) {
    screens.screens.push_back(
        {8, u"AboveLeft"_s, {{-1000, 925}, {1000, 600}}, {{-1000, 925}, {1000, 580}}, 1});
    screens.screens.push_back(
        {9, u"Below"_s, {{0, -800}, {1200, 800}}, {{0, -760}, {1200, 760}}, 1});
    struct Row {
        Rect frame;
        Point pointer;
        Rect maximized;
    };
    const Rect primary{{0, 25}, {1440, 900}};
    for (const Row& row :
         {Row{{{-300, -300}, {500, 280}}, {}, {{-1000, -580}, {1000, 580}}},
          Row{{{-300, -300}, {700, 700}}, {}, primary},
          Row{{{10, 900}, {500, 300}}, {}, {{0, 925}, {1200, 760}}},
          // The centre is on no screen: the pointer decides.
          Row{{{5000, 5000}, {10, 10}}, {-500, 1000}, {{-1000, -580}, {1000, 580}}},
          Row{{{5000, 5000}, {10, 10}}, {9000, 9000}, primary}}) {
        manners().frame = row.frame;
        screens.pointer = row.pointer;
        EXPECT_EQ(snap(Position::maximize), row.maximized);
    }
    screens.screens.clear();
    EXPECT_FALSE(snapper.snap(Position::left));
    EXPECT_EQ(workspace.beeps, 1);
}

TEST_F(WindowSnapperTest, withoutPermissionOrWindowNothingMovesAndTheUserIsTold) {
    snap(Position::left);
    access.granted.clear();
    EXPECT_FALSE(snapper.snap(Position::left));
    EXPECT_EQ(guides, 1);
    EXPECT_EQ(workspace.beeps, 0);

    access.granted = {Access::Kind::accessibility};
    windows.focus(std::nullopt);
    EXPECT_FALSE(snapper.snap(Position::left));
    EXPECT_FALSE(snapper.restore());
    windows.focus(99); // it has just been closed
    EXPECT_FALSE(snapper.moveToNextDisplay());
    EXPECT_EQ(workspace.beeps, 3);
    EXPECT_EQ(guides, 1);
    windows.focus(window);
    EXPECT_EQ(snap(Position::left).size.width, 960); // none of it counted as a press
}

TEST_F(WindowSnapperTest, aWindowWithASizeOfItsOwnKeepsTheEdgesOfItsPosition) {
    struct Row {
        Position position;
        Size minimum;
        Size step;
        Rect expected;
    };
    for (const Row& row : {Row{Position::left, {}, {9, 18}, {{0, 25}, {720, 900}}},
                           Row{Position::right, {}, {17, 18}, {{726, 25}, {714, 900}}},
                           Row{Position::bottom, {}, {9, 40}, {{0, 485}, {1440, 440}}},
                           Row{Position::bottom, {}, {1, 449}, {{0, 476}, {1440, 449}}},
                           Row{Position::right, {800, 950}, {1, 1}, {{640, 25}, {800, 950}}},
                           Row{Position::center, {700, 1}, {1, 1}, {{370, 275}, {700, 400}}}}) {
        window = windows.open({{100, 100}, {500, 400}});
        manners().minimum = row.minimum;
        manners().step = row.step;
        EXPECT_EQ(snap(row.position), row.expected);
        EXPECT_LE(manners().requests, 2);
    }
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(WindowSnapperTest, aSizeCutOffAtTheOldPlaceIsAskedForAgainAtTheNewOne) {
    manners().frame = {{1000, 100}, {300, 300}};
    manners().room = {{0, 0}, {1440, 925}};
    EXPECT_EQ(snap(Position::maximize), (Rect{{0, 25}, {1440, 900}}));
    EXPECT_EQ(manners().requests, 1);
}

TEST_F(WindowSnapperTest, aWindowThatRefusesIsAskedTwiceAndOneThatClosesIsLeftInPeace) {
    manners().obeys = false;
    EXPECT_TRUE(snapper.snap(Position::left));
    EXPECT_EQ(settle(), (Rect{{100, 100}, {500, 400}}));
    EXPECT_EQ(manners().requests, 2);
    EXPECT_EQ(workspace.beeps, 1);
    manners().frame = {{0, 25}, {900, 500}}; // at the right corner, and still refusing to grow
    snap(Position::maximize);
    EXPECT_EQ(workspace.beeps, 2);

    manners().obeys = true;
    snapper.snap(Position::left);
    windows.close(window);
    settle();
    EXPECT_EQ(workspace.beeps, 2);
}

TEST_F(WindowSnapperTest, restoringBringsBackTheFrameThatTheUserChose) {
    EXPECT_FALSE(snapper.restore());
    EXPECT_EQ(workspace.beeps, 1);
    const Rect chosen = manners().frame;
    snapper.snap(Position::left);
    snap(Position::left); // the first is still on its way
    snap(Position::bottom);
    EXPECT_TRUE(snapper.restore());
    EXPECT_EQ(settle(), chosen);
    EXPECT_FALSE(snapper.restore());

    snap(Position::left);
    snapper.restore();
    settle();
    EXPECT_EQ(snap(Position::left).size.width, 720) << "which begins anew";
    const Rect dragged{{30, 40}, {600, 500}};
    manners().frame = dragged;
    snap(Position::maximize);
    snapper.restore();
    EXPECT_EQ(settle(), dragged);
}

TEST_F(WindowSnapperTest, theNextDisplayTakesAWindowToTheSameRelativePlace) {
    EXPECT_FALSE(snapper.moveToNextDisplay());
    screens.screens.push_back({8, u"Right"_s, {{1440, 0}, {720, 925}}, {{1440, 0}, {720, 450}}, 1});
    struct Row {
        Rect frame;
        Rect next;
        double step;
    };
    for (const Row& row : {Row{{{720, 25}, {720, 900}}, {{1800, 475}, {360, 450}}, 1},
                           Row{{{0, 25}, {1440, 900}}, {{1440, 475}, {720, 450}}, 1},
                           Row{{{470, 275}, {500, 400}}, {{1675, 600}, {250, 200}}, 1},
                           Row{{{720, 25}, {720, 900}}, {{1803, 475}, {357, 450}}, 17}}) {
        window = windows.open(row.frame);
        manners().step.width = row.step;
        snapper.moveToNextDisplay();
        EXPECT_EQ(settle(), row.next);
        manners().step.width = 1;
        snapper.moveToNextDisplay();
        EXPECT_NEAR(settle().maxX(), row.frame.maxX(), 1);
    }
}

TEST_F(WindowSnapperTest, goingAroundDisplaysOfOtherScalesAWindowKeepsItsSize) {
    const double width = 1920 / 1.5;
    const double height = 1085 / 1.5; // not a whole number
    screens.screens.push_back(
        {8, u"Right"_s, {{1440, 0}, {width, 925}}, {{1440, 0}, {width, height}}, 1.5});
    for (const Rect& frame : {Rect{{101, 131}, {503, 401}}, Rect{{720, 25}, {720, 900}}}) {
        window = windows.open(frame);
        for (const Screen& next : {screens.screens[1], screens.screens[0], screens.screens[1],
                                   screens.screens[0], screens.screens[1], screens.screens[0]}) {
            manners().step = {1 / next.backingScale, 1 / next.backingScale};
            snapper.moveToNextDisplay();
            const Rect visible = flipped(next.visibleFrame, 925);
            EXPECT_LE(settle().maxX(), visible.maxX());
            EXPECT_GE(settle().minY(), visible.minY());
            EXPECT_LE(settle().maxY(), visible.maxY());
        }
        EXPECT_NEAR(settle().size.width, frame.size.width, 1);
        EXPECT_NEAR(settle().size.height, frame.size.height, 1);
    }
}

} // namespace
} // namespace quillet
