#include "platform/linux/x11/X11DisplayPower.h"
#include "platform/linux/InputDesktop.h"

#include <QElapsedTimer>
#include <xcb/screensaver.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

TEST(X11KeysUp, whatIsToHappenWaitsForKeysAndButtonsAndABit) {
    LinuxScheduler scheduler;
    const auto connection = X11Connection::open();
    X11KeysUp keysUp(*connection, scheduler);
    for (const auto& [press, release] : {std::pair{u"xdotool keydown a"_s, u"xdotool keyup a"_s},
                                         {u"xdotool mousedown 1"_s, u"xdotool mouseup 1"_s}}) {
        run(press);
        bool hasHappened = false;
        keysUp.then([&] { hasHappened = true; });
        spinFor(400ms);
        EXPECT_FALSE(hasHappened);
        QElapsedTimer sinceRelease;
        sinceRelease.start();
        run(release);
        EXPECT_TRUE(spinUntil([&] { return hasHappened; }));
        EXPECT_GE(sinceRelease.elapsed(), 300);
    }
}

TEST(X11DisplayPower, theScreenSaverStaysAwayWhileOneSuspensionIsLeft) {
    LinuxScheduler scheduler;
    const auto connection = X11Connection::open();
    const auto observer = X11Connection::open();
    const auto isSaving = [&] {
        const XcbOwned<xcb_screensaver_query_info_reply_t> info(xcb_screensaver_query_info_reply(
            observer->xcb(), xcb_screensaver_query_info(observer->xcb(), observer->root()),
            nullptr));
        return info && info->state == XCB_SCREENSAVER_STATE_ON;
    };
    X11DisplayPower power(*connection, scheduler);
    auto suspension = power.suspend();
    auto another = power.suspend();
    ASSERT_TRUE(suspension && another);
    run(u"xset s 1 1"_s);
    another.reset();
    EXPECT_FALSE(spinUntil(isSaving, 2500ms));
    suspension.reset();
    EXPECT_TRUE(spinUntil(isSaving));
    run(u"xset s 0 0"_s);
}

} // namespace quillet
