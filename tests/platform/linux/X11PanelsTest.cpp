#include "contracts/PanelsContract.h"
#include "platform/linux/InputDesktop.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr Rect card{{200, 300}, {400, 120}};

/// A widget of one colour.
class Sheet : public QWidget {
public:
    explicit Sheet(QRgb colour) : m_colour(colour) {}

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).fillRect(rect(), m_colour); }

private:
    QColor m_colour;
};

/// y upwards.
void clickAt(double x, double y, int button = 1) {
    run(u"xdotool mousemove %1 %2 click %3"_s.arg(x).arg(1080 - y).arg(button));
    spinFor(40ms);
}

struct X11PanelsBackend : InputParts {
    Panels& panels() { return InputParts::panels; }
    static void clickOutside() { clickAt(1500, 900); }
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PanelsContract, X11PanelsBackend);

class X11PanelsTest : public InputDesktop {
protected:
    X11PanelsTest() {
        auto* layout = new QVBoxLayout(&content);
        layout->addWidget(&search);
        panel = panels.make(content, {101, true, false, 20, 12});
        panel->onResignKey = [this] { ++resigned; };
        panel->setFrame(card);
    }

    /// The colour on the screen.
    QRgb pixel(double x, double y) const {
        const XcbOwned<xcb_get_image_reply_t> image(xcb_get_image_reply(
            connection->xcb(),
            xcb_get_image(connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection->root(),
                          static_cast<int16_t>(x), static_cast<int16_t>(1080 - y), 1, 1, ~0U),
            nullptr));
        return image ? *reinterpret_cast<const QRgb*>(xcb_get_image_data(image.get())) & 0xffffff
                     : 0;
    }

    xcb_window_t focus() const {
        const XcbOwned<xcb_get_input_focus_reply_t> reply(xcb_get_input_focus_reply(
            connection->xcb(), xcb_get_input_focus(connection->xcb()), nullptr));
        return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
    }

    /// Sends a key to the application.
    void post() {
        posted.reset();
        keys.post({{14, true, 0}, {14, false, 0}}, [this](bool done) { posted = done; });
    }

    Sheet content{0xff0000};
    QLineEdit search;
    std::optional<bool> posted;
    int resigned = 0;
    std::unique_ptr<Panel> panel;
};

TEST_F(X11PanelsTest, theKeyPanelGetsWhatIsTypedAndNobodyElseUntilItIsTakenAway) {
    KeyLog target;
    const auto toggle = hotKeys.add(9, 0x300, 7);
    panel->makeKeyAndOrderFront();
    search.setFocus();
    EXPECT_TRUE(spinUntil([&] { return search.hasFocus(); }));
    run(u"xdotool type abc"_s);
    EXPECT_TRUE(spinUntil([&] { return search.text() == u"abc"_s; }));
    run(u"xdotool key super+shift+v"_s); // a shortcut works all the same
    EXPECT_TRUE(spinUntil([&] { return pressed == std::vector<uint32_t>{7}; }));

    QMenu menu(&content);
    menu.addAction(u"Entry"_s);
    menu.popup(content.mapToGlobal(QPoint(40, 40)));
    spinFor(50ms);
    menu.close();
    spinFor(50ms);
    run(u"xdotool type d"_s);
    EXPECT_TRUE(spinUntil([&] { return search.text() == u"abcd"_s; }));

    post(); // waits for the panel to let go of the keyboard
    spinFor(50ms);
    EXPECT_EQ(target.keys(), QStringList());
    panel->orderOut();
    EXPECT_TRUE(spinUntil([&] { return target.keys().size() == 2; }));
    EXPECT_EQ(target.keys(), QStringList({u"press e 0x0"_s, u"release e 0x0"_s}));
    EXPECT_EQ(resigned, 0);
}

TEST_F(X11PanelsTest, whatIsTypedWhileAShortcutActsWaitsForThePanelThatItOpens) {
    KeyLog target;
    const auto shortcut = hotKeys.add(9, 0x300, 7);
    bool opens = true;
    std::unique_ptr<Timer> action;
    hotKeys.onPressed = [&](uint32_t) {
        action = scheduler.after(0ms, [&] {
            run(u"xdotool key e"_s);
            if (opens)
                panel->makeKeyAndOrderFront();
        });
    };
    run(u"xdotool key super+shift+v"_s);
    EXPECT_TRUE(spinUntil([&] { return search.text() == u"e"_s; }));
    EXPECT_FALSE(target.keys().contains(u"press e 0x0"_s));
    panel->orderOut();

    opens = false;
    run(u"xdotool key super+shift+v"_s);
    EXPECT_TRUE(spinUntil([&] { return target.keys().contains(u"press e 0x0"_s); }));

    const xcb_window_t before = focus();
    {
        const ForeignGrab grab;
        for (int time = 0; time < 2; ++time) {
            panel->makeKeyAndOrderFront();
            spinFor(1s); // until it takes the focus in place of the keyboard
        }
    }
    run(u"xdotool key super+shift+v"_s);
    EXPECT_TRUE(spinUntil([&] { return search.text() == u"ee"_s; })) << "nobody let the keys go";
    EXPECT_NE(focus(), before);
    panel->giveKeyboardBack();
    EXPECT_TRUE(spinUntil([&] { return focus() == before; }));
}

TEST_F(X11PanelsTest, itLosesTheKeyboardToAClickElsewhereOrToAnotherActiveWindow) {
    const KeyLog target;
    panel->makeKeyAndOrderFront();
    spinFor(50ms);
    clickAt(card.midX(), card.midY());
    clickAt(1500, 100, 4); // scrolling
    EXPECT_EQ(resigned, 0);
    clickAt(card.minX() - 10, card.midY()); // the margin is not the panel
    EXPECT_EQ(resigned, 1);
    EXPECT_FALSE(panel->isKey());

    panel->makeKeyAndOrderFront();
    const KeyLog other;
    EXPECT_TRUE(spinUntil([&] { return resigned == 2; }));
}

TEST_F(X11PanelsTest, keysGoToTheWindowThatWasActiveOrNowhere) {
    const auto isPosted = [&] {
        post();
        spinUntil([&] { return posted.has_value(); });
        return posted.value();
    };
    std::optional<KeyLog> target(std::in_place);
    panel->makeKeyAndOrderFront();
    spinFor(50ms);
    panel->orderOut();
    EXPECT_TRUE(isPosted());
    EXPECT_TRUE(spinUntil([&] { return target->keys().size() == 2; }));
    {
        const ForeignGrab grab;
        EXPECT_FALSE(isPosted());
    }
    KeyLog other;
    EXPECT_TRUE(isPosted()) << "another window has become the active one";
    EXPECT_TRUE(spinUntil([&] { return target->keys().size() == 4; }));
    target.reset();
    EXPECT_FALSE(isPosted());
    EXPECT_EQ(other.keys(), QStringList());
    panel->makeKeyAndOrderFront();
    panel->orderOut();
    EXPECT_TRUE(isPosted());
    EXPECT_TRUE(spinUntil([&] { return other.keys().size() == 2; }));
}

TEST_F(X11PanelsTest, panelsStandByLevelAndAboveFullScreenWindows) {
    Sheet higherContent{0x0000ff};
    const auto higher = panels.make(higherContent, {102, false, true, 0, 0});
    higher->setFrame({{300, 320}, {50, 50}});
    KeyLog window;
    higher->orderFront();
    panel->orderFront();
    window.program().addStates({"_NET_WM_STATE_FULLSCREEN"});
    EXPECT_TRUE(spinUntil([&] { return pixel(325, 345) == 0x0000ff; }));

    EXPECT_TRUE(spinUntil([&] { return pixel(500, 310) == 0xff0000; }));
    // Without a compositor nothing is there but the card with its corners cut.
    EXPECT_FALSE(panels.isTranslucent());
    EXPECT_NE(pixel(card.minX() - 10, card.midY()), 0xff0000U);
    EXPECT_NE(pixel(card.minX() + 1, card.minY() + 1), 0xff0000U);
}

TEST_F(X11PanelsTest, withACompositorThePanelFadesAndItsMarginLetsClicksThrough) {
    QProcess compositor;
    compositor.start(u"picom"_s, {u"--backend"_s, u"xrender"_s, u"--config"_s, u"/dev/null"_s});
    ASSERT_TRUE(spinUntil([&] { return panels.isTranslucent(); }));

    panel->orderFront();
    EXPECT_TRUE(spinUntil([&] { return pixel(card.midX(), card.minY() + 5) == 0xff0000; }));
    panel->setAlpha(0.5);
    EXPECT_TRUE(spinUntil([&] {
        const int red = qRed(pixel(card.midX(), card.minY() + 5));
        return red > 100 && red < 200;
    }));
    panel->setAlpha(0);
    EXPECT_TRUE(spinUntil([&] { return pixel(card.midX(), card.minY() + 5) == pixel(1500, 900); }));

    panel->makeKeyAndOrderFront();
    clickAt(card.midX(), card.midY());
    EXPECT_EQ(resigned, 0);
    clickAt(card.minX() - 10, card.midY());
    EXPECT_EQ(resigned, 1);
    compositor.terminate();
    compositor.waitForFinished();
}

} // namespace

} // namespace quillet
