#include "SnapFigures.h"

#include "FigureTable.h"
#include "support/DesktopSession.h"
#include "support/Eventually.h"
#include "support/FakeApplication.h"
#include "support/QuilletProcess.h"

#include <algorithm>
#include <array>
#include <xcb/xtest.h>

namespace quillet {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int snaps = 31;
constexpr QRect screen{0, 0, 1920, 1080};
constexpr QRect small{100, 100, 500, 400};

// Control, Alt and Return, as X servers number a standard keyboard's keys: the factory shortcut.
constexpr std::array<uint8_t, 3> maximize{37, 64, 36};

void press(XClient& client, const std::array<uint8_t, 3>& keys) {
    const auto fake = [&](uint8_t what, uint8_t key) {
        xcb_test_fake_input(client.connection(), what, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    };
    std::for_each(keys.begin(), keys.end(), [&](uint8_t key) { fake(XCB_KEY_PRESS, key); });
    std::for_each(keys.rbegin(), keys.rend(), [&](uint8_t key) { fake(XCB_KEY_RELEASE, key); });
    xcb_flush(client.connection());
}

void configure(XClient& client, xcb_window_t window, const QRect& frame) {
    const std::array values{frame.x(), frame.y(), frame.width(), frame.height()};
    xcb_configure_window(client.connection(), window,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                             XCB_CONFIG_WINDOW_HEIGHT,
                         values.data());
    xcb_flush(client.connection());
}

/// Looks without a pause, as the pauses would be part of the figure.
bool comesTo(const FakeApplication& application, const QRect& place, Clock::duration deadline) {
    const auto end = Clock::now() + deadline;
    while (application.visibleFrame() != place) {
        if (Clock::now() > end)
            return false;
    }
    return true;
}

} // namespace

void measureSnapping(FigureTable& table) {
    DesktopSession session;
    QuilletProcess quillet(session, QStringLiteral(QUILLET_PROGRAM));
    if (!quillet.start())
        qFatal("%s does not start: %s", QUILLET_PROGRAM, quillet.errors().constData());
    FakeApplication application(session.display(), "Editor", {.frame = small});
    XClient user(session.display());
    std::vector<double> times;
    for (int i = 0; i < snaps; ++i) {
        std::this_thread::sleep_for(100ms); // what the snap before made is looked at until then
        configure(user, application.window(), small);
        if (!eventually([&] { return application.visibleFrame().x() == small.x(); }))
            qFatal("the window does not go back");
        const auto begin = Clock::now();
        press(user, maximize);
        if (!comesTo(application, screen, 2s))
            qFatal("the window does not come to its place");
        times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    std::ranges::nth_element(times, times.begin() + snaps / 2);
    table.add("shortcut until a window is in its place, median", times[snaps / 2], 60, "ms");
}

} // namespace quillet
