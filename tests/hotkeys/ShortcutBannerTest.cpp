#include "hotkeys/ui/ShortcutBanner.h"
#include "hotkeys/HotKeyWorld.h"
#include "look/Picture.h"
#include "platform/memory/MemoryPanels.h"
#include "platform/memory/MemoryScreens.h"

#include <gmock/gmock.h>
#include <QApplication>
#include <QKeyEvent>
#include <QPushButton>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;
using enum HotKeyAction;
using testing::ElementsAre;
using testing::IsEmpty;

/// A desktop that has Control+Alt with the arrows for its workspaces.
class ShortcutBannerTest : public testing::Test, protected HotKeyWorld {
protected:
    ShortcutBannerTest() {
        keys.taken = {{123, 0x1800}, {124, 0x1800}, {125, 0x1800}, {126, 0x1800}};
        start();
    }

    void start() {
        banner.reset();
        alternatives.reset();
        relaunch();
        for (const HotKeyActionRow& row : hotKeyActions())
            handle(row.action);
        alternatives = std::make_unique<ShortcutAlternatives>(*center, preferences);
        banner = std::make_unique<ShortcutBanner>(*alternatives, Look{theme, scheduler, panels},
                                                  screens);
        banner->showNews();
    }

    QWidget* shown() const {
        const auto isVisible = std::ranges::find_if(panels.all(), &MemoryPanel::isVisible);
        return isVisible == panels.all().end() ? nullptr : &(*isVisible)->content;
    }

    void click(const QString& text) {
        for (auto* button : shown()->findChildren<QPushButton*>()) {
            if (button->text() == text) {
                button->click();
                scheduler.advance(std::chrono::milliseconds(300));
                return;
            }
        }
        ADD_FAILURE() << "no such button";
    }

    /// The user clicks the card and answers with a key.
    void answerByKey(int key) {
        EXPECT_FALSE(panels.keyPanel()) << "the keyboard stays where it is";
        const QPointF card(100, 60);
        QMouseEvent click(QEvent::MouseButtonPress, card, card, Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(shown(), &click);
        ASSERT_TRUE(panels.keyPanel());
        QKeyEvent press(QEvent::KeyPress, key, {});
        QApplication::sendEvent(shown()->focusWidget(), &press);
        scheduler.advance(std::chrono::milliseconds(300));
    }

    Theme theme;
    MemoryPanels panels;
    MemoryScreens screens;
    std::unique_ptr<ShortcutAlternatives> alternatives;
    std::unique_ptr<ShortcutBanner> banner;
};

TEST_F(ShortcutBannerTest, theAlternativesOfTakenShortcutsWorkOnceTheyAreAccepted) {
    EXPECT_THAT(center->failed(), ElementsAre(snapLeft, snapRight, snapTop, snapBottom));
    EXPECT_EQ(keys.registered().size(), 7U);
    ASSERT_TRUE(shown());
    EXPECT_EQ(shown()->accessibleDescription(),
              u"Left half ⌃⌥←, Right half ⌃⌥→, Top half ⌃⌥↑, Bottom half ⌃⌥↓"_s);
    EXPECT_TRUE(matchesPicture(shown()->grab().toImage(), u"shortcut-banner-light"_s));
    theme.setAppearance(Appearance::dark);
    EXPECT_TRUE(matchesPicture(shown()->grab().toImage(), u"shortcut-banner-dark"_s));
    answerByKey(Qt::Key_Return);
    EXPECT_FALSE(shown());
    EXPECT_THAT(center->failed(), IsEmpty());
    EXPECT_EQ(center->shortcut(snapTop).display(), u"⌥⌘↑"_s);
    EXPECT_THAT(press({126, 0x900, u"↑"_s}), ElementsAre(snapTop));
    start();
    EXPECT_FALSE(shown());
    EXPECT_THAT(center->failed(), IsEmpty());
}

TEST_F(ShortcutBannerTest, aRefusalIsToldOnceAndOnlyWhatIsFreeIsOffered) {
    answerByKey(Qt::Key_Escape);
    EXPECT_EQ(center->failed().size(), 4U);
    start();
    EXPECT_FALSE(shown());
    keys.taken.insert({9, 0x300});
    keys.taken.insert({123, 0x900});
    EXPECT_TRUE(alternatives->refusals().front().alternative) << "tried again after changes only";
    center->set({124, 0x900, u"→"_s}, pickColor);
    EXPECT_FALSE(alternatives->refusals().front().alternative);
    start();
    ASSERT_TRUE(shown()) << "one more is taken";
    click(u"Use These"_s);
    EXPECT_THAT(center->failed(), ElementsAre(snapLeft, snapRight));
    EXPECT_EQ(center->shortcut(pickColor).display(), u"⌥⌘→"_s);
}

} // namespace
} // namespace quillet
