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
using enum SnapPosition;
using Outcome = WindowSnapper::Outcome;

TEST(SnapPosition, everyPositionHasItsPartOfTheUsableArea) {
    const Rect even{{0, 25}, {1440, 900}};
    const Rect odd{{-1000, 10}, {1000, 700}}; // whole points grow outwards
    struct Row {
        SnapPosition position;
        double fraction;
        Rect visible;
        Size window;
        Rect expected;
    };
    for (const Row& each : {Row{left, 2.0 / 3, even, {}, {{0, 25}, {960, 900}}},
                            Row{right, 2.0 / 3, even, {}, {{480, 25}, {960, 900}}},
                            Row{top, 1.0 / 3, even, {}, {{0, 25}, {1440, 300}}},
                            Row{bottom, 1.0 / 3, even, {}, {{0, 625}, {1440, 300}}},
                            Row{maximize, 0.5, even, {}, even},
                            Row{center, 0.5, even, {501, 400}, {{469, 275}, {502, 400}}},
                            Row{right, 1.0 / 3, odd, {}, {{-334, 10}, {334, 700}}},
                            Row{center, 0.5, odd, {2000, 900}, odd}})
        EXPECT_EQ(snapTarget(row(each.position), each.visible, each.window, each.fraction, 1),
                  each.expected);
    const Rect uneven{{0, 25}, {1440 * 0.96, 900 * 0.96}}; // where a point is 1/0.96 pixels
    EXPECT_NEAR(snapTarget(row(left), uneven, {}, 0.5, 1 / 0.96).maxX(), 720 * 0.96, 1e-6);
    EXPECT_NEAR(snapTarget(row(right), uneven, {}, 0.5, 1 / 0.96).minX(), 720 * 0.96, 1e-6);
}

class WindowSnapperTest : public testing::Test {
protected:
    WindowSnapperTest() {
        screens.screens = {{7, u"P"_s, {{0, 0}, {1440, 925}}, {{0, 0}, {1440, 900}}, 1}};
    }

    /// The window's frame after a snap has run its course.
    Rect snap(SnapPosition position) {
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
        EXPECT_EQ(snap(left), (Rect{{0, 25}, {width, 900}}));
    for (const SnapPosition other : {right, maximize, center}) {
        snap(other);
        EXPECT_EQ(snap(left).size.width, 720);
    }
    snap(maximize);
    EXPECT_EQ(snap(maximize), (Rect{{0, 25}, {1440, 900}}));

    const auto first = window;
    snap(top);
    window = windows.open({{10, 10}, {300, 300}});
    EXPECT_EQ(snap(top).size.height, 450);
    windows.focus(window = first);
    EXPECT_EQ(snap(top).size.height, 450);
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
        EXPECT_EQ(snap(maximize), row.maximized);
    }
    screens.screens.clear();
    EXPECT_EQ(snapper.snap(left), Outcome::noWindow);
    EXPECT_EQ(workspace.beeps, 1);
}

TEST_F(WindowSnapperTest, withoutPermissionOrWindowNothingMovesAndTheUserIsTold) {
    snap(left);
    access.granted.clear();
    EXPECT_EQ(snapper.snap(left), Outcome::noPermission);
    EXPECT_EQ(guides, 1);
    EXPECT_EQ(workspace.beeps, 0);

    access.granted = {Access::Kind::accessibility};
    windows.focus(std::nullopt);
    EXPECT_EQ(snapper.snap(left), Outcome::noWindow);
    windows.focus(99); // it has just been closed
    EXPECT_EQ(snapper.moveToNextDisplay(), Outcome::noWindow);
    EXPECT_EQ(workspace.beeps, 2);
    EXPECT_EQ(guides, 1);
    windows.focus(window);
    EXPECT_EQ(snap(left).size.width, 960) << "none of it counted as a press";
}

TEST_F(WindowSnapperTest, aWindowWithASizeOfItsOwnKeepsTheEdgesOfItsPosition) {
    struct Row {
        SnapPosition position;
        Size minimum;
        Size step;
        Rect expected;
    };
    for (const Row& row : {Row{right, {}, {17, 18}, {{726, 25}, {714, 900}}},
                           Row{bottom, {}, {9, 40}, {{0, 485}, {1440, 440}}},
                           Row{bottom, {}, {1, 449}, {{0, 476}, {1440, 449}}},
                           Row{right, {800, 950}, {1, 1}, {{640, 25}, {800, 950}}},
                           Row{center, {700, 1}, {1, 1}, {{370, 275}, {700, 400}}}}) {
        window = windows.open({{100, 100}, {500, 400}});
        manners().minimum = row.minimum;
        manners().step = row.step;
        EXPECT_EQ(snap(row.position), row.expected);
        EXPECT_LE(manners().requests, 3);
    }
    window = windows.open({{1000, 100}, {300, 300}});
    manners().room = {{0, 0}, {1440, 925}}; // which cuts the first size off
    EXPECT_EQ(snap(maximize), (Rect{{0, 25}, {1440, 900}}));
    EXPECT_EQ(manners().requests, 1);
    EXPECT_EQ(workspace.beeps, 0);
    window = windows.open({{0, 25}, {800, 900}});
    manners().minimum.width = 800;
    EXPECT_EQ(snap(left), (Rect{{0, 25}, {800, 900}}));
    EXPECT_EQ(manners().requests, 2) << "and it was not maximised in between";
}

TEST_F(WindowSnapperTest, aWindowThatRefusesMakesOneBeepAndOneThatClosesIsLeftInPeace) {
    manners().obeys = false;
    EXPECT_EQ(snap(left), (Rect{{100, 100}, {500, 400}}));
    EXPECT_LE(manners().requests, 3);
    EXPECT_EQ(workspace.beeps, 1);
    manners().frame = {{0, 25}, {900, 500}}; // at the right corner, and still refusing to grow
    snap(maximize);
    EXPECT_EQ(workspace.beeps, 2);

    manners().obeys = true;
    snapper.snap(left);
    windows.close(window);
    settle();
    EXPECT_EQ(workspace.beeps, 2);
}

TEST_F(WindowSnapperTest, aProgramThatUndoesASizeIsCorrectedOnceAndItsFrameIsNotTheUsersChoice) {
    const Rect chosen = manners().frame;
    manners().lateSize = chosen.size;
    EXPECT_EQ(snap(left), (Rect{{0, 25}, chosen.size}));
    EXPECT_EQ(manners().requests, 2) << "its edges are where they belong";
    EXPECT_EQ(snap(right), (Rect{{940, 25}, chosen.size}));
    EXPECT_EQ(manners().requests, 5);
    EXPECT_EQ(workspace.beeps, 0);
    manners().lateSize = Size{600, 400}; // and again after the correction
    manners().minimum = {700, 0};
    EXPECT_EQ(snap(bottom), (Rect{{0, 525}, {600, 400}}));
    manners().minimum = {};
    manners().lateSize.reset();
    snapper.restore();
    EXPECT_EQ(settle(), chosen);
}

TEST_F(WindowSnapperTest, aWindowComesToItsPlaceFromWhereItsProgramOrTheDesktopHeldIt) {
    manners().fill = {.horizontally = true, .vertically = true};
    manners().lateSize = Size{690, 880}; // the one that it had before it was maximised
    snapper.snap(right);
    scheduler.advance(std::chrono::milliseconds(30));
    manners().lateSize.reset();
    EXPECT_EQ(settle(), (Rect{{720, 25}, {720, 900}}));

    window = windows.open({{0, 25}, {720, 900}});
    manners().isTiled = true;
    manners().lateSize = Size{1388, 398}; // without the shadow that it lacked meanwhile
    snapper.snap(bottom);
    scheduler.advance(std::chrono::milliseconds(30));
    manners().lateSize.reset();
    EXPECT_EQ(settle(), (Rect{{0, 475}, {1440, 450}}));
    EXPECT_FALSE(manners().fill.isAny());

    const Rect tile{{0, 25}, {720, 900}};
    window = windows.open(tile);
    manners().isTiled = true;
    snapper.snap(maximize); // its corner is the tile's
    const auto meanwhile = scheduler.after({}, [this] {
        EXPECT_TRUE(manners().fill.isAny()) << "for a moment";
        snapper.snap(right);
    });
    EXPECT_EQ(settle(), (Rect{{720, 25}, {720, 900}}));
    snapper.restore();
    EXPECT_EQ(settle(), tile);
    EXPECT_FALSE(manners().fill.isAny());
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(WindowSnapperTest, aWindowThatFilledTheScreenDoesSoAgainWhenItIsRestored) {
    screens.screens.push_back({8, u"Right"_s, {{1440, 0}, {800, 925}}, {{1440, 0}, {800, 925}}, 1});
    const WindowFill whole{.horizontally = true, .vertically = true};
    for (const WindowFill& fill :
         {whole, WindowFill{.vertically = true}, WindowFill{.fullScreen = true}}) {
        window = windows.open({{0, 25}, {1440, 900}});
        manners().fill = fill;
        snap(right);
        EXPECT_FALSE(manners().fill.isAny());
        snap(bottom);
        snapper.restore();
        settle();
        EXPECT_EQ(manners().fill, fill);
    }
    EXPECT_EQ(manners().frame, (Rect{{0, 475}, {1440, 450}})) << "for when it no longer does";
    snapper.moveToNextDisplay();
    settle();
    snapper.restore();
    EXPECT_EQ(settle(), (Rect{{0, 475}, {1440, 450}})) << "on the screen where it was";
    EXPECT_TRUE(manners().fill.fullScreen);

    snap(maximize);
    manners().fill = whole; // the user did that
    snap(left);
    snapper.restore();
    settle();
    EXPECT_EQ(manners().fill, whole);
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(WindowSnapperTest, restoringBringsBackTheFrameThatTheUserChose) {
    EXPECT_EQ(snapper.restore(), Outcome::nothingToRestore);
    const Rect chosen = manners().frame;
    snapper.snap(left);
    snap(left); // the first is still on its way
    snap(bottom);
    EXPECT_EQ(snapper.restore(), Outcome::moves);
    EXPECT_EQ(settle(), chosen);
    EXPECT_EQ(snapper.restore(), Outcome::nothingToRestore);
    EXPECT_EQ(workspace.beeps, 2);

    snap(left);
    snapper.restore();
    settle();
    EXPECT_EQ(snap(left).size.width, 720) << "which begins anew";
    const Rect dragged{{30, 40}, {600, 500}};
    manners().frame = dragged;
    snap(maximize);
    snapper.restore();
    EXPECT_EQ(settle(), dragged);
}

TEST_F(WindowSnapperTest, theNextDisplayTakesAWindowToTheSameRelativePlace) {
    EXPECT_EQ(snapper.moveToNextDisplay(), Outcome::noOtherDisplay);
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

TEST_F(WindowSnapperTest, aSizeThatWasCutToFitOnOneDisplayIsNotStretchedOnTheNext) {
    screens.screens.push_back({8, u"Right"_s, {{1440, 0}, {720, 925}}, {{1440, 0}, {720, 450}}, 1});
    manners().minimum = {450, 1};
    for (int around = 0; around < 2; ++around) {
        snapper.moveToNextDisplay();
        EXPECT_EQ(settle().size, (Size{450, 200}));
        snapper.moveToNextDisplay();
        EXPECT_EQ(settle(), (Rect{{100, 100}, {500, 400}}));
    }
}

TEST_F(WindowSnapperTest, goingAroundDisplaysOfOtherScalesAWindowKeepsItsSize) {
    const double width = 1920 / 1.5;
    const double height = 1085 / 1.5; // not a whole number
    screens.screens.push_back(
        {8, u"Right"_s, {{1440, 0}, {width, 925}}, {{1440, 0}, {width, height}}, 1.5});
    for (const Rect& frame : {Rect{{101, 131}, {503, 401}}, Rect{{720, 25}, {720, 900}}}) {
        window = windows.open(frame);
        for (size_t move = 1; move <= 6; ++move) {
            const Screen& next = screens.screens[move % 2];
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
