#include "clipboard/ClipboardKeeper.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

class ClipboardKeeperTest : public testing::Test {
protected:
    bool isKeptWhenItsOwnerQuits() {
        world.pasteboard.ownerQuits();
        world.letPoll();
        return world.pasteboard.isOwnedByUs();
    }

    World world;
    ClipboardKeeper keeper{*world.store, world.pasteboard};
    const MemoryPasteboard::Item mark{PasteboardType::concealed, ""};
};

} // namespace

TEST_F(ClipboardKeeperTest, whatWasNotRecordedIsNotKept) {
    world.copy(u"open"_s);
    world.copy({mark, {PasteboardType::string, "secret"}});
    EXPECT_FALSE(isKeptWhenItsOwnerQuits());
    world.copy(u"deleted"_s);
    world.store->deleteItem(world.newest());
    EXPECT_FALSE(isKeptWhenItsOwnerQuits());
    world.pasteboard.copyText(u"gone before the poll"_s);
    EXPECT_FALSE(isKeptWhenItsOwnerQuits());
}

TEST_F(ClipboardKeeperTest, aClipStillOnItsWayIntoTheHistoryIsKeptOnceItIsThere) {
    const QString large(300'000, u'x');
    world.scheduler.holdBackground();
    world.copy(large);
    EXPECT_FALSE(isKeptWhenItsOwnerQuits());
    world.scheduler.releaseBackground();
    world.letPoll();
    EXPECT_TRUE(world.pasteboard.isOwnedByUs());
    EXPECT_EQ(world.pasteboard.text(), large);
}

TEST_F(ClipboardKeeperTest, aProgramThatQuitsMayLeaveBehindOnlyWhatIsNotConfidential) {
    const auto savedBeforeAndAfterThePoll = [&] {
        const bool before = world.pasteboard.askToSave();
        world.letPoll();
        return std::pair(before, world.pasteboard.askToSave());
    };
    world.pasteboard.copyText(u"plain"_s);
    EXPECT_EQ(savedBeforeAndAfterThePoll(), std::pair(true, true));
    world.pasteboard.copyFrom({mark, {PasteboardType::string, "x"}});
    EXPECT_EQ(savedBeforeAndAfterThePoll(), std::pair(false, false));

    world.workspace.setFrontmost(RunningApplication{u"com.bitwarden.desktop"_s, u"Vault"_s, 7});
    world.pasteboard.copyText(u"y"_s);
    EXPECT_EQ(savedBeforeAndAfterThePoll(), std::pair(false, false));
    world.workspace.setFrontmost(RunningApplication{u"editor"_s, u"Editor"_s, 8});
    EXPECT_FALSE(world.pasteboard.askToSave()) << "it is the vault's, whoever is frontmost now";
}

} // namespace quillet
