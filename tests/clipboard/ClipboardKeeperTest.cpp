#include "clipboard/ClipboardKeeper.h"
#include "clipboard/ClipboardPreferences.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

class ClipboardKeeperTest : public testing::Test {
protected:
    World world;
    ClipboardKeeper keeper{*world.store, world.pasteboard};
};

} // namespace

TEST_F(ClipboardKeeperTest, whatWasNotRecordedIsNotKept) {
    world.copy(u"open"_s);
    world.copy({{PasteboardType::concealed, ""}, {PasteboardType::string, "secret"}});
    world.pasteboard.ownerQuits();
    EXPECT_FALSE(world.pasteboard.isOwnedByUs());

    world.copy(u"deleted"_s);
    world.store->deleteItem(world.newest());
    world.pasteboard.ownerQuits();
    EXPECT_FALSE(world.pasteboard.isOwnedByUs());

    world.pasteboard.copyText(u"gone before the poll"_s);
    world.pasteboard.ownerQuits();
    world.letPoll();
    EXPECT_FALSE(world.pasteboard.isOwnedByUs());
}

TEST_F(ClipboardKeeperTest, aClipStillOnItsWayIntoTheHistoryIsKeptOnceItIsThere) {
    const QString large(300'000, u'x');
    world.scheduler.holdBackground();
    world.copy(large);
    world.pasteboard.ownerQuits();
    EXPECT_FALSE(world.pasteboard.isOwnedByUs());
    world.scheduler.releaseBackground();
    world.letPoll();
    EXPECT_TRUE(world.pasteboard.isOwnedByUs());
    EXPECT_EQ(world.pasteboard.text(), large);
}

TEST_F(ClipboardKeeperTest, aProgramThatQuitsMayLeaveBehindOnlyWhatIsNotConfidential) {
    world.pasteboard.copyText(u"plain"_s);
    EXPECT_TRUE(world.pasteboard.askToSave()) << "before the poll";
    world.letPoll();
    EXPECT_TRUE(world.pasteboard.askToSave());

    world.pasteboard.copyFrom({{PasteboardType::concealed, ""}, {PasteboardType::string, "x"}});
    EXPECT_FALSE(world.pasteboard.askToSave());
    world.letPoll();
    EXPECT_FALSE(world.pasteboard.askToSave());

    const RunningApplication vault{u"com.bitwarden.desktop"_s, u"Bitwarden"_s, 7};
    world.workspace.setFrontmost(vault);
    world.pasteboard.copyText(u"y"_s);
    EXPECT_FALSE(world.pasteboard.askToSave());
    world.letPoll();
    world.workspace.setFrontmost(RunningApplication{u"editor"_s, u"Editor"_s, 8});
    EXPECT_FALSE(world.pasteboard.askToSave()) << "it is the vault's, whoever is frontmost now";
}

} // namespace quillet
