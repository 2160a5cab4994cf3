#include "shelf/Shelf.h"

#include <gmock/gmock.h>
#include <QCoreApplication>
#include <QKeyEvent>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

const std::vector<KeyEvent> commandV{{9, true, 0x100000}, {9, false, 0x100000}};

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
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {},
               quint32 scanCode = 0) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers, scanCode, 0, 0, text);
        QWidget* focus = shelf.controller.window().focusWidget();
        QCoreApplication::sendEvent(focus, &event);
    }

    QString pasteboard(qint64 maxBytes = 1000) {
        QString text;
        shelf.world.pasteboard.read(PasteboardType::string, maxBytes, [&](const auto& reading) {
            text = QString::fromUtf8(reading.bytes);
        });
        return text;
    }

    bool isOut() { return !shelf.panel().isVisible(); }

    Shelf shelf;
};

TEST_F(ShelfControllerTest, itSlidesUpWhereThePointerIsAndFadesOut) {
    const Rect target{{10, 10}, {1420, 318}};
    EXPECT_EQ(shelf.panel().frame(), (Rect{{10, -14}, {1420, 318}}));
    EXPECT_EQ(shelf.panel().alpha(), 0);
    EXPECT_TRUE(shelf.panel().isKey());
    shelf.advance(90);
    EXPECT_GT(shelf.panel().alpha(), 0.5) << "it eases out";
    shelf.advance(110); // to the end of the last frame
    EXPECT_EQ(shelf.panel().frame(), target);
    EXPECT_EQ(shelf.panel().alpha(), 1);

    shelf.panels.clickOutside();
    shelf.advance(100);
    EXPECT_FALSE(isOut());
    EXPECT_EQ(shelf.panel().frame(), target);
    shelf.controller.hide();
    shelf.advance(100);
    EXPECT_FALSE(isOut()) << "hiding again starts the fade again";
    shelf.advance(50);
    EXPECT_TRUE(isOut());

    shelf.screens.screens.push_back(
        {2, u"HDMI-1"_s, {{1440, 100}, {1920, 1080}}, {{1440, 140}, {1920, 1040}}, 1});
    shelf.screens.pointer = {2000, 1180};
    shelf.controller.show();
    shelf.controller.hide();
    shelf.controller.show();
    shelf.advance(1000);
    EXPECT_EQ(shelf.panel().frame(), (Rect{{1450, 150}, {1900, 318}}));
    EXPECT_EQ(shelf.panel().alpha(), 1);
    EXPECT_TRUE(shelf.controller.isVisible());
}

TEST_F(ShelfControllerTest, itMovesWhenItsScreenGoesOrChanges) {
    const Screen laptop = shelf.screens.screens.front();
    const Screen other{2, u"HDMI-1"_s, {{1440, 100}, {1920, 1080}}, {{1440, 140}, {1920, 1040}}, 1};
    shelf.screens.change({laptop, other});
    shelf.screens.pointer = {2000, 500};
    shelf.controller.show();
    shelf.screens.pointer = {100, 100};
    shelf.screens.change({laptop, other});
    shelf.advance(300);
    EXPECT_EQ(shelf.panel().frame(), (Rect{{1450, 150}, {1900, 318}}));
    shelf.screens.change({laptop});
    EXPECT_EQ(shelf.panel().frame(), (Rect{{10, 10}, {1420, 318}}));
    EXPECT_TRUE(shelf.panel().isKey());

    shelf.controller.hide();
    shelf.screens.change({other});
    shelf.advance(200);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(shelf.panel().frame(), (Rect{{10, 10}, {1420, 318}}));
}

TEST_F(ShelfControllerTest, typingSearchesWhileArrowsSelectAndEscapeClearsThenCloses) {
    press(Qt::Key_Right);
    EXPECT_EQ(shelf.model().selectedItem()->text(), u"https://example.org/b"_s);
    press(Qt::Key_A, {}, u"a"_s);
    press(Qt::Key_L, {}, u"l"_s);
    EXPECT_EQ(shelf.model().query(), u"al"_s);
    EXPECT_EQ(shelf.model().visibleItems().size(), 1U);
    press(Qt::Key_Backspace);
    EXPECT_EQ(shelf.model().query(), u"a"_s);

    press(Qt::Key_Escape);
    EXPECT_EQ(shelf.model().query(), QString());
    EXPECT_EQ(shelf.controller.window().findChild<QLineEdit*>()->text(), QString());
    press(Qt::Key_Escape);
    shelf.advance(200);
    EXPECT_TRUE(isOut());
    press(Qt::Key_Return);
    shelf.advance(200);
    EXPECT_TRUE(shelf.keys.posted.empty()) << "a hidden shelf takes no keys";
}

TEST_F(ShelfControllerTest, returnRightAfterTypingWaitsUntilLongTextsAreSearched) {
    const QString longText = QString(100'000, u'x') + u"gamma"_s;
    shelf.world.copy(longText);
    const auto isShown = [&](const QWidget* widget) {
        return widget->isVisibleTo(&shelf.controller.window());
    };
    const auto* emptyState = shelf.view().findChild<ShelfEmptyState*>();
    shelf.controller.show();
    shelf.world.scheduler.holdBackground();
    press(Qt::Key_G, {}, u"gam"_s);
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    shelf.advance(100);
    EXPECT_FALSE(isOut());
    shelf.world.scheduler.releaseBackground();
    shelf.advance(1);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(pasteboard(100'000 + 5), longText);

    shelf.controller.show();
    shelf.world.scheduler.holdBackground();
    press(Qt::Key_N, {}, u"nowhere"_s);
    EXPECT_FALSE(isShown(emptyState));
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    press(Qt::Key_A, {}, u"alp"_s);
    press(Qt::Key_1, Qt::ControlModifier);
    shelf.advance(299);
    EXPECT_FALSE(isOut());
    shelf.advance(1);
    EXPECT_TRUE(isOut()) << "it does not wait for ever";
    EXPECT_EQ(pasteboard(), u"alpha"_s);

    shelf.controller.show();
    press(Qt::Key_N, {}, u"nowhere"_s);
    shelf.world.scheduler.releaseBackground();
    shelf.advance(1);
    EXPECT_TRUE(isShown(emptyState));
}

TEST_F(ShelfControllerTest, returnPastesAfterTheShelfIsGone) {
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(pasteboard(), u"https://example.org/b"_s);
    EXPECT_TRUE(shelf.world.pasteboard.types().contains(PasteboardType::url));
    EXPECT_EQ(shelf.world.newest()->text(), u"https://example.org/b"_s);
    shelf.advance(59);
    EXPECT_TRUE(shelf.keys.posted.empty());
    EXPECT_EQ(shelf.world.soundsPlayed(), 0U);
    shelf.advance(1);
    EXPECT_EQ(shelf.keys.posted, commandV);
    EXPECT_EQ(shelf.world.soundsPlayed(), 1U);
    shelf.advance(2000);
    EXPECT_EQ(shelf.world.store->items().size(), 3U) << "our own write is no new copy";
}

TEST_F(ShelfControllerTest, whatCannotBePastedIsCopiedAndTheUserIsTold) {
    const auto message = [&] { return shelf.panels.all().back()->content.accessibleName(); };
    shelf.keys.reachesApplication = false;
    press(Qt::Key_Return);
    shelf.advance(60);
    EXPECT_EQ(pasteboard(), u"gamma"_s);
    EXPECT_EQ(message(), u"Copied — paste with ⌃V"_s);
    EXPECT_EQ(shelf.world.soundPlayer.plays.size(), 1U);

    shelf.keys.reachesApplication = true;
    shelf.world.pasteboard.setGrantsOwnership(false);
    shelf.controller.show();
    press(Qt::Key_Return);
    EXPECT_TRUE(isOut());
    shelf.advance(60);
    EXPECT_EQ(message(), u"Clipboard is in use — try again"_s);
    EXPECT_TRUE(shelf.keys.posted.empty()) << "it would paste what another program has copied";
    EXPECT_EQ(shelf.world.soundPlayer.plays.size(), 1U);
}

TEST_F(ShelfControllerTest, numbersPasteTheVisibleCardsAndSwallowTheRest) {
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_FALSE(isOut());
    EXPECT_EQ(shelf.model().query(), QString());
    shelf.model().setQuery(u"exam"_s);
    press(Qt::Key_1, Qt::MetaModifier | Qt::ShiftModifier);
    EXPECT_TRUE(isOut());
    EXPECT_EQ(pasteboard(), u"https://example.org/b"_s);
    EXPECT_FALSE(shelf.world.pasteboard.types().contains(PasteboardType::url)) << "plain text";
}

TEST_F(ShelfControllerTest, superAndControlAreCommandInEveryLayoutAndTypeNothing) {
    const QChar ze(0x0437);
    shelf.keyboard.symbols[33] = U'p';
    bool isPinned = false;
    for (const Qt::KeyboardModifier modifier : {Qt::ControlModifier, Qt::MetaModifier}) {
        press(ze.toUpper().unicode(), modifier, ze, 33);
        isPinned = !isPinned;
        EXPECT_EQ(shelf.model().selectedItem()->isPinned(), isPinned) << modifier;
    }
    press(Qt::Key_Meta);
    press(Qt::Key_Y, Qt::MetaModifier, u"y"_s);
    press(Qt::Key_Y, Qt::AltModifier, u"y"_s);
    EXPECT_EQ(shelf.model().query(), QString());

    press(Qt::Key_A, {}, u"a"_s);
    press(Qt::Key_A, Qt::MetaModifier, u"a"_s);
    press(Qt::Key_X, Qt::MetaModifier, u"x"_s);
    EXPECT_EQ(shelf.model().query(), QString());
    EXPECT_EQ(pasteboard(), u"a"_s);
    press(Qt::Key_V, Qt::MetaModifier, u"v"_s);
    EXPECT_EQ(shelf.model().query(), u"a"_s);
}

TEST_F(ShelfControllerTest, withoutThePermissionItOnlyCopiesAndExplainsOnce) {
    shelf.access.granted.clear();
    press(Qt::Key_Return);
    EXPECT_EQ(shelf.world.soundsPlayed(), 1U);
    EXPECT_EQ(shelf.setupGuides, 1);
    shelf.advance(2000);
    shelf.controller.show();
    press(Qt::Key_Return, Qt::ShiftModifier);
    shelf.advance(2000);
    EXPECT_EQ(shelf.world.soundsPlayed(), 2U);
    EXPECT_EQ(shelf.setupGuides, 1);
    EXPECT_TRUE(shelf.keys.posted.empty());
    EXPECT_EQ(pasteboard(), u"gamma"_s);
}

TEST_F(ShelfControllerTest, deletingSelectsTheNeighbourAndPinningNeedsACard) {
    press(Qt::Key_P, Qt::ControlModifier, u"\x10"_s);
    EXPECT_TRUE(shelf.model().selectedItem()->isPinned());
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(shelf.model().selectedItem()->text(), u"https://example.org/b"_s);
    press(Qt::Key_Right);
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(shelf.model().selectedItem()->text(), u"https://example.org/b"_s);
    press(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(shelf.model().selectedItem(), nullptr);
    press(Qt::Key_Backspace, Qt::ControlModifier);
    press(Qt::Key_P, Qt::ControlModifier, u"\x10"_s);
    press(Qt::Key_Return);
    EXPECT_FALSE(isOut());
}

} // namespace
} // namespace quillet
