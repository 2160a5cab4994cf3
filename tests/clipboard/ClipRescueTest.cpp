#include "clipboard/StoreFiles.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

class ClipRescueTest : public testing::Test {
protected:
    ClipRescueTest() {
        world.copy({{PasteboardType::png, png}});
        world.copy(u"text"_s);
        world.store->togglePin(world.newest());
        world.quit();
    }

    /// What lies in the data folder besides the history itself.
    QStringList keptBeside() const {
        QStringList names =
            QDir(files.folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
        names.removeIf([](const QString& name) {
            return name == u"blobs"_s || name == u"lock"_s || name.startsWith(u"clips.sqlite"_s);
        });
        return names;
    }

    QString kept(qsizetype index) const { return files.folder + u'/' + keptBeside().value(index); }

    void turnIntoALaterVersion() {
        SqliteConnection(files.database(), SqliteConnection::Access::readWrite)
            .run(u"PRAGMA user_version = 99"_s);
    }

    void expectEverythingCarriedOver() {
        EXPECT_EQ(world.texts(), QStringList({u"text"_s, QString()}));
        EXPECT_TRUE(world.newest()->isPinned());
        EXPECT_EQ(world.store->items().back()->imageData(), png);
    }

    World world;
    const ClipFiles files{world.dataFolder()};
    const QByteArray png = plainPng();
};

} // namespace

TEST_F(ClipRescueTest, aStoreOfALaterVersionIsKeptAndItsItemsCarriedOver) {
    turnIntoALaterVersion();
    const QByteArray later = contentsOf(files.database());
    world.scheduler.setNow(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
    world.preferences.set(PreferenceKey<int>{u"clipboard.historyDays"_s, 0}, 10'000);
    world.launch();
    expectEverythingCarriedOver();
    EXPECT_EQ(keptBeside(), QStringList(u"clips-newer-2026-01-02T03.04.05.sqlite"_s));
    EXPECT_EQ(contentsOf(kept(0)), later);
    world.relaunch();
    EXPECT_EQ(keptBeside().size(), 1) << "it happens once";
}

TEST_F(ClipRescueTest, aRandomFileInItsPlaceIsKeptWithTheClipsItMayHaveHad) {
    const QByteArray random = QByteArray("\x07 no database ").repeated(1000);
    for (const QByteArray& content : {random, QByteArray()}) {
        replaceContents(files.database(), content);
        world.launch();
        EXPECT_TRUE(world.store->items().empty());
        ASSERT_EQ(keptBeside().size(), 2);
        EXPECT_EQ(contentsOf(kept(1)), content);
        EXPECT_EQ(filesWith(kept(0), png).size(), 1);

        world.copy({{PasteboardType::png, png}});
        EXPECT_EQ(world.newest()->imageData(), png);
        world.quit();
        QFile::remove(kept(1));
        QDir(kept(0)).removeRecursively();
    }
}

TEST_F(ClipRescueTest, aDamagedStoreGivesUpEveryReadableRow) {
    world.launch();
    constexpr int added = 300;
    const QString filler(2000, u'.');
    for (int number = 0; number < added; ++number)
        world.copy(QString::number(number) + filler);
    world.quit();

    QByteArray damaged = contentsOf(files.database());
    const qsizetype middle = damaged.size() / 2 / 4096 * 4096;
    damaged.replace(middle, 3 * 4096, QByteArray(3 * 4096, '\xaa'));
    for (const QByteArray& content : {damaged, damaged.first(damaged.size() * 2 / 3)}) {
        replaceContents(files.database(), content);
        world.launch();
        const auto survivors = world.store->items().size();
        ASSERT_GT(survivors, size_t(added / 2));
        EXPECT_LT(survivors, size_t(added + 2));
        EXPECT_EQ(world.store->items().back()->imageData(), png);
        EXPECT_EQ(contentsOf(kept(0)), content);
        world.quit();
        QFile::remove(kept(0));
    }
}

TEST_F(ClipRescueTest, theLogOfADamagedStoreIsReadAndKeptWithIt) {
    // As after a power cut: the last copy is in the log only.
    world.launch();
    world.copy(u"in the log"_s);
    const QByteArray log = contentsOf(files.database() + u"-wal"_s);
    const QByteArray database = contentsOf(files.database());
    world.quit();
    replaceContents(files.database(), database);
    replaceContents(files.database() + u"-wal"_s, log);
    world.launch();
    EXPECT_EQ(world.texts().front(), u"in the log"_s);
    EXPECT_EQ(keptBeside(), QStringList()) << "a log alone is no damage";
    world.quit();

    QByteArray damaged = database;
    damaged.replace(0, 4096, QByteArray(4096, '\xaa'));
    replaceContents(files.database(), damaged);
    replaceContents(files.database() + u"-wal"_s, log);
    world.launch();
    EXPECT_EQ(filesWith(files.folder, log).size(), 1);
    EXPECT_EQ(filesWith(files.folder, png).size(), 1);
}

TEST_F(ClipRescueTest, aRescueThatTheDiskRefusesLeavesEverythingAsItWas) {
    turnIntoALaterVersion();
    {
        const FullDisk fullDisk;
        EXPECT_FALSE(ClipContainer::open(files.folder, world.scheduler).container);
    }
    EXPECT_EQ(keptBeside().filter(u"newer"_s), QStringList());
    world.launch();
    expectEverythingCarriedOver();
}

TEST_F(ClipRescueTest, aRescueThatACrashInterruptedIsCompletedAtTheNextLaunch) {
    QFile::rename(files.database(), files.rescued());
    // A log is left of the database that is already out of the way.
    replaceContents(files.database() + u"-wal"_s, "frames of another file");
    world.launch();
    expectEverythingCarriedOver();
    EXPECT_EQ(keptBeside(), QStringList(u"clips-interrupted.sqlite-wal"_s));
}

} // namespace quillet
