#include "clipboard/ClipboardPreferences.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

class HistoryTest : public testing::Test {
protected:
    void copyNumbers(int from, int to) {
        for (int number = from; number <= to; ++number)
            world.copy(QString::number(number));
    }

    World world;
};

} // namespace

TEST_F(HistoryTest, theOldestUnpinnedItemsGoWhenThereAreTooMany) {
    world.preferences.set(ClipboardPreferences::maxItems, 3);
    copyNumbers(1, 2);
    world.store->togglePin(world.store->items().back());
    copyNumbers(3, 6);
    EXPECT_EQ(world.texts(), QStringList({u"6"_s, u"5"_s, u"4"_s, u"1"_s}))
        << "pinned items stay and do not count";

    world.preferences.set(ClipboardPreferences::maxItems, -5);
    world.copy(u"5"_s);
    EXPECT_EQ(world.store->items().size(), 4u) << "only a new item trims";
    world.copy(u"7"_s);
    EXPECT_EQ(world.texts(), QStringList({u"7"_s, u"1"_s})) << "below 1 counts as 1";
}

TEST_F(HistoryTest, ageIsCountedInCalendarDaysAcrossAChangeOfTheClocks) {
    world.preferences.set(ClipboardPreferences::historyDays, 1);
    // The clocks go forward in the night to the 30th, which therefore has 23 hours.
    world.scheduler.setNow(QDateTime(QDate(2025, 3, 29), QTime(12, 0)));
    world.copy(u"noon"_s);
    world.scheduler.setNow(QDateTime(QDate(2025, 3, 30), QTime(11, 59)));
    world.copy(u"before noon"_s);
    EXPECT_EQ(world.store->items().size(), 2u);
    world.scheduler.setNow(QDateTime(QDate(2025, 3, 30), QTime(12, 1)));
    world.copy(u"after noon"_s);
    EXPECT_EQ(world.texts(), QStringList({u"after noon"_s, u"before noon"_s}));
}

TEST_F(HistoryTest, launchingTrimsForGood) {
    copyNumbers(1, 3);
    world.store->togglePin(world.store->items().back());
    world.preferences.set(PreferenceKey<QString>{u"clipboard.maxItems"_s, {}}, u"many"_s);
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList({u"3"_s, u"1"_s})) << "what is no number counts as 1";

    world.preferences.set(ClipboardPreferences::historyDays, 0);
    world.scheduler.setNow(world.scheduler.now().addDays(2));
    world.relaunch();
    world.preferences.set(ClipboardPreferences::historyDays, 100);
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList(u"1"_s));
}

TEST_F(HistoryTest, pinsAndOrderOutliveARelaunch) {
    copyNumbers(1, 4);
    const QUuid second = world.store->items()[2]->id();
    world.store->togglePin(world.store->items()[2]);
    EXPECT_EQ(world.texts(), QStringList({u"4"_s, u"3"_s, u"2"_s, u"1"_s})) << "pinning moves none";
    world.copy(u"1"_s);
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList({u"1"_s, u"4"_s, u"3"_s, u"2"_s}));
    EXPECT_TRUE(world.store->items()[3]->isPinned());
    EXPECT_EQ(world.store->items()[3]->id(), second);
}

TEST_F(HistoryTest, deletingAndClearingRemoveForGoodButLeaveTheObjectsValid) {
    copyNumbers(1, 5);
    world.store->togglePin(world.store->items()[1]);
    const auto deleted = world.newest();
    int changes = 0;
    QObject::connect(world.store.get(), &ClipboardStore::itemsChanged, [&] { ++changes; });
    world.store->deleteItem(deleted);
    EXPECT_EQ(changes, 1);
    world.store->deleteItem(deleted);
    world.store->togglePin(deleted);
    world.store->copyToPasteboard(deleted, false);
    EXPECT_EQ(world.pasteboard.text(), u"5"_s);
    EXPECT_EQ(world.texts(), QStringList({u"4"_s, u"3"_s, u"2"_s, u"1"_s}));

    world.store->clear(true);
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList(u"4"_s));
    world.store->clear(false);
    world.relaunch();
    EXPECT_TRUE(world.store->items().empty());
}

} // namespace quillet
