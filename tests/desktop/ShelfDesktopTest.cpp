#include "desktop/ShelfDesktop.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ShelfLoopDesktop : public ShelfDesktop {
protected:
    void SetUp() override {
        ShelfDesktop::SetUp();
        ASSERT_TRUE(quillet.start());
        fillHistory({"alpha one", "alpha two", "beta"});
    }

    static bool becomes(Editor& editor, const QString& text) {
        return eventually([&] { return editor.text() == text; });
    }
};

TEST_F(ShelfLoopDesktop, whatIsChosenIsPastedWhereTheUserIsWorking) {
    Editor editor(session());
    ActiveWindowLog active(display());
    openShelf();
    press(u"type ALPHA"_s);
    press(u"key Right Return"_s);
    EXPECT_TRUE(becomes(editor, u"alpha one"_s));
    EXPECT_TRUE(isShelfGone());
    EXPECT_FALSE(isKeyboardGrabbed());

    openShelf();
    press(u"type x"_s);
    press(u"key Escape"_s);
    press(u"key ctrl+2"_s); // the search is gone, the shelf is not
    EXPECT_TRUE(becomes(editor, u"alpha onebeta"_s));

    openShelf();
    press(u"key Escape"_s);
    EXPECT_TRUE(isShelfGone());
    press(u"key exclam"_s);
    EXPECT_TRUE(becomes(editor, u"alpha onebeta!"_s)) << "Escape pasted something";
    EXPECT_EQ(active.writes(), 0);
}

TEST_F(ShelfLoopDesktop, whatQuilletItselfOffersIsPastedIntoTheSearch) {
    Editor editor(session());
    copyBack(3);
    openShelf();
    press(u"key Right ctrl+v"_s);
    press(u"key Return"_s);
    EXPECT_TRUE(becomes(editor, u"alpha one"_s)) << editor.text().toStdString();
}

TEST_F(ShelfLoopDesktop, thePointerDragsOutPastesAndCloses) {
    Editor editor(session());
    openShelf();
    const QPoint first(136, 930);
    const QString inEditor = u"mousemove --window %1"_s.arg(editor.window());
    press(u"mousemove %1 %2 mousedown 1 sleep 0.1 mousemove %1 900 sleep 0.1"_s.arg(first.x() + 230)
              .arg(first.y()));
    press(inEditor + u" 50 50 sleep 0.1 "_s + inEditor + u" 60 60 sleep 0.1 mouseup 1"_s);
    EXPECT_TRUE(becomes(editor, u"alpha two"_s)) << editor.text().toStdString();

    press(u"mousemove %1 %2 click --repeat 2 --delay 100 1"_s.arg(first.x()).arg(first.y()));
    EXPECT_TRUE(isShelfGone());
    EXPECT_TRUE(becomes(editor, u"alpha twobeta"_s)) << editor.text().toStdString();

    openShelf();
    press(inEditor + u" 50 50 click 1"_s);
    EXPECT_TRUE(isShelfGone());
}

TEST_F(ShelfLoopDesktop, accentsAreComposedInTheSearch) {
    fillHistory({"caffé", "caffe"});
    session().run(u"setxkbmap"_s, {u"us"_s, u"-variant"_s, u"intl"_s});
    Editor editor(session());
    openShelf();
    press(u"key dead_acute e Return"_s);
    EXPECT_TRUE(becomes(editor, u"caffé"_s)) << editor.text().toStdString();
    session().run(u"setxkbmap"_s, {u"us"_s, u"-variant"_s, u""_s});
}

TEST_F(ShelfLoopDesktop, modifiersThatAreHeldNeitherLeakNorStick) {
    Editor editor(session());
    openShelf();
    press(u"keydown ctrl keydown alt key 1"_s);
    EXPECT_TRUE(isShelfGone());
    press(u"keyup ctrl keyup alt"_s);
    EXPECT_TRUE(becomes(editor, u"beta"_s));

    openShelf();
    press(u"keydown shift key Return"_s); // and held until after the paste
    EXPECT_TRUE(becomes(editor, u"betabeta"_s));
    press(u"keyup shift"_s);
    press(u"key x"_s);
    EXPECT_TRUE(becomes(editor, u"betabetax"_s));
}

TEST_F(ShelfLoopDesktop, aShortcutThatIsHeldIsNotTypedIntoTheSearch) {
    Editor editor(session());
    session().run(u"xset"_s, {u"r"_s, u"rate"_s, u"100"_s, u"100"_s});
    press(u"keydown super keydown shift keydown v"_s);
    ASSERT_TRUE(eventually([] { return isKeyboardGrabbed(); }));
    press(u"keyup shift keyup super"_s);
    press(u"sleep 0.2 keyup v"_s);
    // On a busy machine the keys that follow would repeat as well.
    session().run(u"xset"_s, {u"r"_s, u"rate"_s});
    press(u"type alpha"_s);
    press(u"key Return"_s);
    EXPECT_TRUE(becomes(editor, u"alpha two"_s)) << editor.text().toStdString();
}

TEST_F(ShelfLoopDesktop, itPastesAndObeysInEveryKeyboardLayout) {
    struct Layout {
        QStringList setxkbmap;
        QString v, p;
        bool isSecond = false;
    };
    const auto isPinned = [&] { return quillet.clips().first()["isPinned"_L1].toBool(); };
    for (const auto& [setxkbmap, v, p, isSecond] :
         {Layout{{u"dvorak"_s}, u"60"_s, u"27"_s}, Layout{{u"ru"_s}, u"55"_s, u"33"_s},
          Layout{{u"us,ru"_s, u"-option"_s, u"grp:menu_toggle"_s}, u"55"_s, u"33"_s, true}}) {
        SCOPED_TRACE(setxkbmap.first().toStdString());
        session().run(u"setxkbmap"_s, setxkbmap);
        if (isSecond)
            press(u"key 135"_s);
        openShelf(v); // the first presses may come before the shortcut has moved
        for (const QString& modifier : {u"ctrl"_s, u"super"_s}) {
            const bool before = isPinned();
            press(u"key %1+%2"_s.arg(modifier, p));
            EXPECT_TRUE(eventually([&] { return isPinned() != before; })) << modifier.toStdString();
        }
        press(u"key Escape"_s);
        EXPECT_TRUE(isShelfGone()) << "something was typed";
        Editor editor(session());
        openShelf(v);
        press(u"key Return"_s);
        EXPECT_TRUE(becomes(editor, u"beta"_s));
        // A key that was lent to paste with moves no shortcut.
        press(u"sleep 0.2 key super+shift+"_s + v);
        EXPECT_TRUE(eventually([] { return windowNamed("Quillet Shelf"); }));
        press(u"key Escape"_s);
        EXPECT_TRUE(isShelfGone());
    }
    session().run(u"setxkbmap"_s, {u"us"_s, u"-option"_s});
}

TEST_F(ShelfLoopDesktop, aTerminalGetsItWithShift) {
    quillet.quit();
    quillet.writePreferences({{u"paste.terminals"_s, QJsonArray{u"MyTerm"_s}}});
    ASSERT_TRUE(quillet.start());
    const QString received = session().home() + u"/received"_s;
    const auto terminal = session().start(
        u"xterm"_s,
        {u"-class"_s, u"myterm"_s, u"-xrm"_s,
         u"*VT100.translations: #override Ctrl Shift <Key>V: insert-selection(CLIPBOARD)"_s,
         u"-e"_s, u"sh"_s, u"-c"_s, u"stty raw -echo; cat > "_s + received});
    const auto content = [&] {
        QFile file(received);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none yet");
    };
    ASSERT_TRUE(eventually([&] { return content().isEmpty(); }));
    XClient client(display());
    ASSERT_TRUE(eventually([&] {
        const auto windowClass = client.property(activeWindow(client), XCB_ATOM_WM_CLASS);
        return windowClass.bytes.contains("myterm");
    }));
    openShelf();
    press(u"key Return"_s);
    EXPECT_TRUE(eventually([&] { return content() == "beta"; })) << content().constData();
}

TEST_F(ShelfLoopDesktop, whatHasNoProgramToGoToIsOnTheClipboard) {
    std::optional<Editor> editor(session());
    openShelf();
    editor.reset();
    press(u"key Right Return"_s);
    EXPECT_TRUE(isShelfGone());
    EXPECT_TRUE(eventually([&] { return quillet.errors().contains("keys were not posted"); }));
    EXPECT_EQ(FakeRequestor(display()).read("UTF8_STRING"), "alpha two");
}

TEST_F(ShelfLoopDesktop, itWorksOnceAnotherProgramLetsGoOfTheKeyboard) {
    Editor editor(session());
    XClient other(display());
    xcb_grab_keyboard(other.connection(), 0, other.root(), XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                      XCB_GRAB_MODE_ASYNC);
    other.serverTime();
    ASSERT_EQ(quillet.verb({u"shelf"_s, u"show"_s}).exitCode, 0);
    EXPECT_TRUE(eventually([] { return windowNamed("Quillet Shelf").has_value(); }));
    xcb_ungrab_keyboard(other.connection(), XCB_CURRENT_TIME);
    other.serverTime();
    EXPECT_TRUE(eventually([] { return isKeyboardGrabbed(); }));
    press(u"key Return"_s);
    EXPECT_TRUE(becomes(editor, u"beta"_s));
}

TEST_F(ShelfDesktop, aShortcutThatIsTakenIsReplacedByTheOneOnOffer) {
    XClient other(display());
    constexpr xcb_keycode_t v = 55;
    xcb_grab_key(other.connection(), 1, other.root(), XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT, v,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.serverTime();
    ASSERT_TRUE(quillet.start());
    const auto shortcut = [&] {
        const auto status = QJsonDocument::fromJson(quillet.verb({u"status"_s}).output).object();
        return status["shortcuts"_L1][0].toObject();
    };
    EXPECT_TRUE(shortcut()["refused"_L1].toBool());
    EXPECT_EQ(shortcut()["alternative"_L1].toString(), u"⌥⌘V"_s);

    std::optional<QRect> banner;
    ASSERT_TRUE(eventually([&] { return (banner = windowNamed("Quillet Shortcuts")); }));
    constexpr int shadow = 48;
    const QPoint useThese = banner->bottomRight() - QPoint(shadow + 16 + 40, shadow + 16 + 14);
    press(u"mousemove %1 %2 click 1"_s.arg(useThese.x()).arg(useThese.y()));
    EXPECT_TRUE(eventually([] { return !windowNamed("Quillet Shortcuts"); }));
    EXPECT_EQ(shortcut()["shortcut"_L1].toString(), u"⌥⌘V"_s);
    press(u"key super+alt+v"_s);
    EXPECT_TRUE(eventually([] { return windowNamed("Quillet Shelf").has_value(); }));
}

} // namespace
} // namespace quillet
