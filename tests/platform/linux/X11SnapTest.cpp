#include "contracts/FocusedWindowContract.h"
#include "hotkeys/WindowSnapper.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/linux/InputDesktop.h"
#include "platform/linux/x11/X11FocusedWindow.h"
#include "platform/linux/x11/X11Workspace.h"
#include "platform/linux/x11/XcbXkb.h"
#include "platform/memory/MemoryAccess.h"
#include "platform/memory/MemoryCommands.h"
#include "platform/memory/MemoryScheduler.h"
#include "support/FakeApplication.h"

#include <csignal>
#include <QWidget>
#include <xcb/res.h>

// Under the window manager that QUILLET_WINDOW_MANAGER names.

namespace quillet {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Outcome = WindowSnapper::Outcome;
using Position = SnapPosition;

std::string text(const QRect& rect) {
    return u"%1,%2 %3x%4"_s.arg(rect.x())
        .arg(rect.y())
        .arg(rect.width())
        .arg(rect.height())
        .toStdString();
}

QByteArray display() {
    return qgetenv("DISPLAY");
}

/// Counts the beeps.
class QuietWorkspace : public X11Workspace {
public:
    using X11Workspace::X11Workspace;
    void beep() override { ++beeps; }
    int beeps = 0;
};

struct X11FocusedWindowBackend {
    LinuxScheduler scheduler;
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11Screens screens{*connection};
    X11FocusedWindow x11{*connection, screens, scheduler};
    std::unique_ptr<FakeApplication> application;

    FocusedWindow& windows() { return x11; }
    void open(const Rect& frame) {
        application = std::make_unique<FakeApplication>(
            display(), "Editor",
            WindowForm{
                QRectF(frame.minX(), frame.minY(), frame.size.width, frame.size.height).toRect()});
    }
    void close() { application.reset(); }

    template<typename Condition>
    bool waitFor(Condition condition) {
        return spinUntil(condition);
    }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, FocusedWindowContract, X11FocusedWindowBackend);

class X11SnapTest : public testing::Test {
protected:
    X11SnapTest() {
        spinUntil([&] { return !windows.identity(); });
    }

    FakeApplication open(const WindowForm& form = {}) {
        return FakeApplication(display(), "Editor", form);
    }

    /// Some window managers have no active window for a moment after they moved one.
    void snap(WindowSnapper::Position position) {
        EXPECT_TRUE(spinUntil([&] {
            spinFor(50ms);
            return windows.identity().has_value();
        }));
        EXPECT_EQ(snapper.snap(position), Outcome::moves);
    }

    /// Whether the visible frame is this one, but for a pixel.
    static bool isAt(const FakeApplication& application, const QRect& wanted) {
        const QRect frame = application.visibleFrame();
        const auto off = [](int a, int b) { return std::abs(a - b) > 1; };
        return !off(frame.left(), wanted.left()) && !off(frame.top(), wanted.top()) &&
               !off(frame.right(), wanted.right()) && !off(frame.bottom(), wanted.bottom());
    }

    /// Whether it becomes that one and stays so.
    static testing::AssertionResult comesTo(const FakeApplication& application,
                                            const QRect& wanted) {
        const auto isThere = [&] { return isAt(application, wanted); };
        if (spinUntil(isThere, 2s)) {
            spinFor(60ms);
            if (isThere())
                return testing::AssertionSuccess();
        }
        return testing::AssertionFailure()
               << text(application.visibleFrame()) << " is not " << text(wanted);
    }

    LinuxScheduler scheduler;
    std::unique_ptr<X11Connection> connection = X11Connection::open();
    X11Screens screens{*connection};
    X11FocusedWindow windows{*connection, screens, scheduler};
    QuietWorkspace workspace{*connection, DesktopEntries({})};
    MemoryScheduler noTime;
    MemoryAccess access;
    MemoryCommands commands{noTime};
    Permissions permissions{{access, workspace, commands, scheduler}, {}};
    WindowSnapper snapper{{permissions, windows, screens, workspace}, [] { FAIL(); }};
};

constexpr QRect leftHalf{0, 0, 960, 1080};
constexpr QRect rightHalf{960, 0, 960, 1080};
constexpr QRect everything{0, 0, 1920, 1080};

Qt::Edges edgesTouchedBy(const QRect& frame) {
    Qt::Edges edges;
    edges.setFlag(Qt::LeftEdge, frame.left() == everything.left());
    edges.setFlag(Qt::RightEdge, frame.right() == everything.right());
    edges.setFlag(Qt::TopEdge, frame.top() == everything.top());
    edges.setFlag(Qt::BottomEdge, frame.bottom() == everything.bottom());
    return edges;
}

TEST_F(X11SnapTest, theVisibleFrameComesExactlyToItsPlace) {
    struct Row {
        QByteArray what;
        WindowForm form;
    };
    WindowForm plain;
    WindowForm shadowed;
    shadowed.frame = {100, 100, 602, 402};
    shadowed.ownShadow = 51;
    WindowForm dialog;
    dialog.type = "_NET_WM_WINDOW_TYPE_DIALOG";
    for (const Row& row :
         {Row{"decorated", plain}, Row{"with a shadow", shadowed}, Row{"dialog", dialog}}) {
        SCOPED_TRACE(row.what.constData());
        const FakeApplication application = open(row.form);
        spinFor(50ms); // the window manager may place it after making it active
        const QRect before = application.visibleFrame();
        for (const auto& [position, place] : {std::pair{Position::left, leftHalf},
                                              {Position::right, rightHalf},
                                              {Position::top, QRect(0, 0, 1920, 540)},
                                              {Position::bottom, QRect(0, 540, 1920, 540)},
                                              {Position::bottom, QRect(0, 360, 1920, 720)},
                                              {Position::maximize, everything}}) {
            EXPECT_EQ(snapper.snap(position), Outcome::moves);
            EXPECT_TRUE(comesTo(application, place));
        }
        EXPECT_EQ(snapper.restore(), Outcome::moves);
        EXPECT_TRUE(comesTo(application, before));
        snap(Position::center);
        EXPECT_TRUE(
            comesTo(application, {QPoint((1920 - before.width()) / 2, (1080 - before.height()) / 2),
                                  before.size()}));
    }
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(X11SnapTest, aWindowLeavesItsMaximisedOrFullScreenStateFirst) {
    const QByteArray vertical("_NET_WM_STATE_MAXIMIZED_VERT");
    const QByteArray horizontal("_NET_WM_STATE_MAXIMIZED_HORZ");
    const QByteArray fullScreen("_NET_WM_STATE_FULLSCREEN");
    struct Row {
        std::vector<QByteArray> states;
        Position position;
        QRect place;
    };
    for (const Row& row : {Row{{vertical, horizontal}, Position::right, rightHalf},
                           Row{{fullScreen}, Position::left, leftHalf},
                           Row{{vertical}, Position::maximize, everything}}) {
        FakeApplication application = open();
        application.addStates(row.states);
        const QRect before = application.visibleFrame();
        snap(row.position);
        EXPECT_TRUE(comesTo(application, row.place));
        for (const QByteArray& state : row.states)
            EXPECT_FALSE(application.hasState(state));
        EXPECT_EQ(snapper.restore(), Outcome::moves);
        EXPECT_TRUE(spinUntil([&] {
            return std::ranges::all_of(
                row.states, [&](const QByteArray& state) { return application.hasState(state); });
        }));
        EXPECT_TRUE(comesTo(application, before));
    }
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(X11SnapTest, aShadowThatComesBackLateIsMadeRoomFor) {
    WindowForm form;
    form.ownShadow = 51;
    FakeApplication application = open(form);
    application.addStates({"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"});
    application.setOwnShadow(0);
    snap(Position::left);
    ASSERT_TRUE(comesTo(application, leftHalf));
    application.setOwnShadow(51);
    EXPECT_TRUE(comesTo(application, leftHalf));
}

TEST_F(X11SnapTest, aWindowWithASizeOfItsOwnKeepsTheEdgesOfItsPosition) {
    WindowForm terminal;
    terminal.frame = {50, 50, 1 + 80 * 9, 1 + 24 * 18};
    terminal.step = {9, 18};
    WindowForm wide;
    wide.minimum = {1300, 300};
    for (const WindowForm& form : {terminal, wide}) {
        const FakeApplication application = open(form);
        struct Row {
            Position position;
            Qt::Edges flush;
        };
        for (const Row& row : {Row{Position::right, Qt::RightEdge | Qt::TopEdge},
                               Row{Position::bottom, Qt::LeftEdge | Qt::BottomEdge},
                               Row{Position::right, Qt::RightEdge | Qt::TopEdge},
                               Row{Position::maximize, Qt::LeftEdge | Qt::TopEdge}}) {
            snap(row.position);
            const auto isFlush = [&] {
                return (edgesTouchedBy(application.visibleFrame()) & row.flush) == row.flush;
            };
            EXPECT_TRUE(spinUntil(isFlush, 1s)) << text(application.visibleFrame());
            spinFor(100ms);
        }
    }
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(X11SnapTest, aProgramThatUndoesASizeALittleLaterKeepsTheEdgesOfItsPosition) {
    // Time goes so slowly that no answer is late.
    X11FocusedWindow slow{*connection, screens, noTime};
    WindowSnapper patient{{permissions, slow, screens, workspace}, [] { FAIL(); }};
    FakeApplication application = open();
    spinFor(50ms); // the window manager may place it after making it active
    const QRect before = application.visibleFrame();
    int polls = 0;
    const auto comesSlowlyTo = [&](const QRect& wanted) {
        return spinUntil([&] {
            noTime.advance(++polls % 4 == 0 ? 1ms : 0ms);
            return isAt(application, wanted);
        });
    };
    patient.snap(Position::right);
    for (int undone = 0; undone < 2; ++undone) {
        EXPECT_TRUE(comesSlowlyTo(rightHalf));
        application.resize({320, 200});
        EXPECT_TRUE(spinUntil([&] { return !isAt(application, rightHalf); }));
    }
    EXPECT_TRUE(comesSlowlyTo({QPoint(1920 - before.width(), 0), before.size()}));
    patient.snap(Position::bottom);
    EXPECT_TRUE(comesSlowlyTo({0, 540, 1920, 540}));
    patient.restore();
    EXPECT_TRUE(comesSlowlyTo(before));
    EXPECT_EQ(workspace.beeps, 0);
}

TEST_F(X11SnapTest, onlyOrdinaryWindowsOfOtherProgramsAreMoved) {
    EXPECT_EQ(snapper.snap(Position::left), Outcome::noWindow);
    EXPECT_EQ(workspace.beeps, 1);

    QWidget own;
    own.resize(300, 200);
    own.show();
    own.activateWindow();
    ASSERT_TRUE(spinUntil([&] { return activeWindow(*connection) == own.winId(); }));
    EXPECT_EQ(snapper.snap(Position::left), Outcome::noWindow);
    EXPECT_EQ(workspace.beeps, 2);
    own.hide();

    FakeApplication application = open();
    application.setType("_NET_WM_WINDOW_TYPE_DOCK"); // a window manager would not focus one
    EXPECT_EQ(snapper.snap(Position::left), Outcome::noWindow);
    EXPECT_EQ(workspace.beeps, 3);
}

qint64 windowManagerPid(const X11Connection& connection) {
    const auto check = connection.values(
        connection.root(), connection.atom("_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 1);
    const xcb_res_client_id_spec_t asked{check.at(0), XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XcbOwned<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        connection.xcb(), xcb_res_query_client_ids(connection.xcb(), 1, &asked), nullptr));
    return *xcb_res_client_id_value_value(xcb_res_query_client_ids_ids_iterator(reply.get()).data);
}

TEST_F(X11SnapTest, aWindowThatStaysWhereItIsMakesOneBeepAndOneThatClosesNone) {
    auto application = std::make_unique<FakeApplication>(display(), "Editor");
    const auto windowManager = static_cast<pid_t>(windowManagerPid(*connection));
    ASSERT_GT(windowManager, 1);
    kill(windowManager, SIGSTOP); // as deaf as one that arranges windows by itself
    EXPECT_EQ(snapper.snap(Position::left), Outcome::moves);
    const bool beeped = spinUntil([&] { return workspace.beeps > 0; }, 2s);
    spinFor(400ms);
    EXPECT_TRUE(beeped);
    EXPECT_EQ(workspace.beeps, 1);

    EXPECT_EQ(snapper.snap(Position::right), Outcome::moves);
    application.reset();
    spinFor(400ms);
    kill(windowManager, SIGCONT);
    EXPECT_EQ(workspace.beeps, 1);
}

TEST_F(X11SnapTest, aWindowManagerWithoutARequestForPlacesIsAskedAsPlainProgramsDo) {
    const FakeApplication application = open();
    const xcb_atom_t supported = connection->atom("_NET_SUPPORTED");
    const auto replace = [&](const std::vector<uint32_t>& hints) {
        xcb_change_property(connection->xcb(), XCB_PROP_MODE_REPLACE, connection->root(), supported,
                            XCB_ATOM_ATOM, 32, static_cast<uint32_t>(hints.size()), hints.data());
    };
    const auto before = connection->values(connection->root(), supported, XCB_ATOM_ATOM);
    auto without = before;
    ASSERT_EQ(std::erase(without, connection->atom("_NET_MOVERESIZE_WINDOW")), 1u);
    replace(without);
    snap(Position::right);
    EXPECT_TRUE(comesTo(application, rightHalf));
    replace(before);
}

TEST_F(X11SnapTest, aBeepRingsTheBell) {
    XClient listener(display());
    xcb_connection_t* xcb = listener.connection();
    const XcbOwned<xcb_xkb_use_extension_reply_t> extension(
        xcb_xkb_use_extension_reply(xcb, xcb_xkb_use_extension(xcb, 1, 0), nullptr));
    ASSERT_TRUE(extension && extension->supported);
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, XCB_XKB_EVENT_TYPE_BELL_NOTIFY, 0,
                          XCB_XKB_EVENT_TYPE_BELL_NOTIFY, 0, 0, nullptr);
    listener.serverTime(); // it is listening
    X11Workspace(*connection, DesktopEntries({})).beep();
    const uint8_t xkb = xcb_get_extension_data(xcb, &xcb_xkb_id)->first_event;
    EXPECT_TRUE(listener.wait(
        [xkb](const xcb_generic_event_t& event) { // the keyboard may change as well
            return eventType(event) == xkb && event.pad0 == XCB_XKB_BELL_NOTIFY;
        },
        2s));
}

TEST_F(X11SnapTest, eachMonitorHasItsOwnUsableArea) {
    run(u"xrandr --setmonitor Left 960/250x1080/280+0+0 screen"_s);
    run(u"xrandr --setmonitor Right 960/250x1080/280+960+0 none"_s);
    {
        // A dock of 40 pixels at the bottom of the right monitor.
        FakeApplication application = open();
        application.reserve({0, 0, 0, 40, 0, 0, 0, 0, 0, 0, 960, 1919});

        snap(Position::maximize);
        EXPECT_TRUE(comesTo(application, leftHalf));
        EXPECT_EQ(snapper.moveToNextDisplay(), Outcome::moves);
        EXPECT_TRUE(comesTo(application, {960, 0, 960, 1040}));
        snap(Position::bottom);
        EXPECT_TRUE(comesTo(application, {960, 520, 960, 520}));
        snapper.moveToNextDisplay();
        EXPECT_TRUE(comesTo(application, {0, 540, 960, 540}));

        // The desktop's own word for each monitor comes first.
        XClient dock(display());
        const std::array<uint32_t, 8> areas{960, 30, 960, 1050, 0, 20, 960, 1060};
        dock.setProperty(dock.root(), dock.atom("_GTK_WORKAREAS_D0"), XCB_ATOM_CARDINAL,
                         {reinterpret_cast<const char*>(areas.data()), sizeof areas}, 32);
        dock.serverTime();
        snap(Position::maximize);
        EXPECT_TRUE(comesTo(application, {0, 20, 960, 1060}));
        xcb_delete_property(dock.connection(), dock.root(), dock.atom("_GTK_WORKAREAS_D0"));
        dock.serverTime();
    }
    run(u"xrandr --delmonitor Right"_s);
    run(u"xrandr --delmonitor Left"_s);
    EXPECT_EQ(workspace.beeps, 0);
}

} // namespace
} // namespace quillet
