#include "shelf/Shelf.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

class ShelfControllerTest : public testing::Test {
protected:
    ShelfControllerTest() {
        for (const QString& text : {u"alpha"_s, u"https://example.org/b"_s, u"gamma"_s})
            shelf.world.copy(text);
        shelf.advance(2000);
        shelf.world.soundPlayer.plays.clear();
        shelf.controller.show();
    }

    /// Presses a key where the keyboard is, in the shelf.
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, text);
        QCoreApplication::sendEvent(shelf.controller.window().focusWidget(), &event);
    }
    void type(const QString& text) { press(Qt::Key_A, {}, text); }

    QString pasteboard() { return shelf.world.pasteboard.text(); }
    QString selected() { return shelf.model().selectedItem()->text().value(); }
    bool isOut() { return !shelf.panel().isVisible(); }

    Shelf shelf;
};

TEST_F(ShelfControllerTest, itSlidesUpWhereThePointerIsAndFadesOut) {
    EXPECT_EQ(shelf.panel().frame(), (Rect{{10, -14}, {1420, 318}}));
    EXPECT_EQ(shelf.panel().alpha(), 0);
    EXPECT_TRUE(shelf.panel().isKey());
    shelf.advance(200); // to the end of the last frame
    EXPECT_EQ(shelf.panel().frame(), (Rect{{10, 10}, {1420, 318}}));
    EXPECT_EQ(shelf.panel().alpha(), 1);

    shelf.panels.clickOutside();
    shelf.advance(100);
    EXPECT_FALSE(isOut());
    shelf.advance(50);
    EXPECT_TRUE(isOut());
    press(Qt::Key_Return);
    EXPECT_EQ(pasteboard(), u"gamma"_s);
    shelf.advance(200);
    EXPECT_TRUE(shelf.keys.posted.empty()) << "a hidden shelf takes no keys";

    shelf.screens.screens.push_back(
        {2, u"HDMI-1"_s, {{1440, 100}, {1920, 1080}}, {{1440, 140}, {1920, 1040}}, 1});
    shelf.screens.pointer = {2000, 1180};
    shelf.controller.show();
    shelf.controller.hide();
    EXPECT_FALSE(shelf.panel().isKey()) << "it fades without the keyboard";
    shelf.controller.show();
    shelf.advance(1000);
    EXPECT_EQ(shelf.panel().frame(), (Rect{{1450, 150}, {1900, 318}}));
    EXPECT_EQ(shelf.panel().alpha(), 1);
}

TEST_F(ShelfControllerTest, returnRightAfterTypingWaitsUntilLongTextsAreSearched) {
    const QString longText = QString(100'000, u'x') + u"gamma"_s;
    shelf.world.copy(longText);
    const auto* emptyState = shelf.view().findChild<ShelfEmptyState*>();
    const auto saysNothingFound = [&] {
        return emptyState->isVisibleTo(&shelf.controller.window());
    };
    shelf.controller.show();
    shelf.world.scheduler.holdBackground();
    type(u"gam"_s);
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    shelf.advance(100);
    EXPECT_FALSE(isOut());
    shelf.world.scheduler.releaseBackground();
    shelf.advance(1);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(pasteboard(), longText);

    shelf.controller.show();
    shelf.world.scheduler.holdBackground();
    type(u"nowhere"_s);
    EXPECT_FALSE(saysNothingFound());
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    type(u"alp"_s);
    press(Qt::Key_1, Qt::ControlModifier);
    shelf.advance(299);
    EXPECT_FALSE(isOut());
    shelf.advance(1);
    EXPECT_TRUE(isOut()) << "it does not wait for ever";
    EXPECT_EQ(pasteboard(), u"alpha"_s);

    shelf.controller.show();
    type(u"nowhere"_s);
    shelf.world.scheduler.releaseBackground();
    shelf.advance(1);
    EXPECT_TRUE(saysNothingFound());
}

TEST_F(ShelfControllerTest, returnPastesAfterTheShelfIsGone) {
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_FALSE(isOut()) << "no fourth card";
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(pasteboard(), u"https://example.org/b"_s);
    EXPECT_TRUE(shelf.world.pasteboard.types().contains(PasteboardType::url));
    shelf.advance(59);
    EXPECT_TRUE(shelf.keys.posted.empty());
    shelf.advance(1);
    EXPECT_EQ(shelf.keys.posted,
              (std::vector<KeyEvent>{{9, true, 0x100000}, {9, false, 0x100000}}));
    EXPECT_EQ(shelf.world.soundsPlayed(), 1U);
    shelf.advance(2000);
    EXPECT_EQ(shelf.world.store->items().size(), 3U) << "our own write is no new copy";

    shelf.controller.show();
    type(u"exam"_s);
    press(Qt::Key_1, Qt::MetaModifier | Qt::ShiftModifier);
    EXPECT_TRUE(isOut());
    EXPECT_FALSE(shelf.world.pasteboard.types().contains(PasteboardType::url)) << "plain text";
}

TEST_F(ShelfControllerTest, whatCannotBePastedIsCopiedAndTheUserIsTold) {
    const auto message = [&] { return shelf.panels.all().back()->content.accessibleName(); };
    shelf.keys.reachesApplication = false;
    press(Qt::Key_Return);
    shelf.advance(60);
    EXPECT_EQ(pasteboard(), u"gamma"_s);
    EXPECT_EQ(message(), u"Copied — ready to paste"_s);
    EXPECT_EQ(shelf.world.soundsPlayed(), 1U);

    shelf.keys.reachesApplication = true;
    shelf.world.pasteboard.setGrantsOwnership(false);
    shelf.controller.show();
    press(Qt::Key_Return);
    EXPECT_TRUE(isOut());
    shelf.advance(60);
    EXPECT_EQ(message(), u"Clipboard is in use — try again"_s);
    EXPECT_TRUE(shelf.keys.posted.empty()) << "it would paste what another program has copied";
    EXPECT_EQ(shelf.world.soundsPlayed(), 1U);

    shelf.world.pasteboard.setGrantsOwnership(true);
    shelf.world.copy(QString(100'000, u'x'));
    shelf.world.copy(u"kept"_s);
    ASSERT_TRUE(QDir(shelf.world.dataFolder() + u"/blobs"_s).removeRecursively());
    shelf.controller.show();
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    shelf.advance(60);
    EXPECT_EQ(message(), u"The content of this clip cannot be read"_s);
    EXPECT_EQ(pasteboard(), u"kept"_s);
    EXPECT_TRUE(shelf.keys.posted.empty());
}

TEST_F(ShelfControllerTest, withoutThePermissionItOnlyCopiesAndExplainsOnce) {
    shelf.access.granted.clear();
    for (const size_t times : {1U, 2U}) {
        shelf.controller.show();
        press(Qt::Key_Return);
        shelf.advance(2000);
        EXPECT_EQ(shelf.world.soundsPlayed(), times);
        EXPECT_EQ(shelf.setupGuides, 1);
    }
    EXPECT_TRUE(shelf.keys.posted.empty());
    EXPECT_EQ(pasteboard(), u"gamma"_s);
}

TEST_F(ShelfControllerTest, superIsCommandAsControlIsAndTypesNothing) {
    press(Qt::Key_Meta);
    press(Qt::Key_Y, Qt::MetaModifier, u"y"_s);
    press(Qt::Key_Y, Qt::AltModifier, u"y"_s);
    EXPECT_EQ(shelf.model().query(), QString());
    type(u"a"_s);
    press(Qt::Key_A, Qt::MetaModifier, u"a"_s);
    press(Qt::Key_X, Qt::MetaModifier, u"x"_s);
    EXPECT_EQ(shelf.model().query(), QString());
    EXPECT_EQ(pasteboard(), u"a"_s);
    press(Qt::Key_V, Qt::MetaModifier, u"v"_s);
    EXPECT_EQ(shelf.model().query(), u"a"_s);
}

TEST_F(ShelfControllerTest, whatIsTypedGoesToTheSearchWhereverTheFocusIs) {
    const QWidget* search = shelf.controller.window().focusWidget();
    auto* links = shelf.view().findChildren<Chip*>()[3];
    links->click();
    EXPECT_EQ(shelf.model().filter(), ShelfModel::Filter::link);
    EXPECT_FALSE(links->focusPolicy() & Qt::ClickFocus);

    links->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Shift, Qt::ShiftModifier);
    EXPECT_EQ(shelf.controller.window().focusWidget(), links) << "Shift-Tab begins so";
    type(u"b"_s);
    type(u"c"_s);
    links->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Backspace, {}, u"\b"_s);
    EXPECT_EQ(shelf.model().query(), u"b"_s);
    EXPECT_EQ(shelf.controller.window().focusWidget(), search);
}

TEST_F(ShelfControllerTest, deletingSelectsTheNeighbourUntilNothingIsLeft) {
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(selected(), u"https://example.org/b"_s);
    press(Qt::Key_Right);
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(selected(), u"https://example.org/b"_s);
    for (const int key : {Qt::Key_Backspace, Qt::Key_Backspace, Qt::Key_P})
        press(key, Qt::ControlModifier);
    press(Qt::Key_Return);
    EXPECT_FALSE(isOut());
}

} // namespace
} // namespace quillet
