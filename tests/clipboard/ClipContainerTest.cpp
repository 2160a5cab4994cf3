#include "clipboard/StoreFiles.h"
#include "support/World.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

int modeOf(const QString& path) {
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777)
                                                                   : -1;
}

class ClipContainerTest : public testing::Test {
protected:
    void copyThree() {
        world.copy(u"short"_s);
        world.copy({{PasteboardType::png, plainPng()}});
        world.copy({{PasteboardType::string, longText}});
    }

    World world;
    const ClipFiles files{world.dataFolder()};
    const QByteArray longText = QByteArray("long ü ").repeated(20'000);
};

} // namespace

TEST_F(ClipContainerTest, everythingIsReadableByItsOwnerOnly) {
    copyThree();
    EXPECT_EQ(modeOf(files.folder), 0700);
    EXPECT_EQ(modeOf(files.blobs()), 0700);
    const QStringList stored = filesWith(files.folder, "");
    EXPECT_GE(stored.size(), 5) << "database, its log and index, two payloads";
    for (const QString& path : stored)
        EXPECT_EQ(modeOf(path), 0600) << qPrintable(path);
}

TEST_F(ClipContainerTest, whatAFullDiskRefusesIsKeptAndWrittenByTheNextSave) {
    world.copy(u"stored"_s);
    world.copy(u"to be deleted"_s);
    {
        const FullDisk fullDisk;
        world.store->deleteItem(world.newest());
        world.store->togglePin(world.newest());
        copyThree();
    }
    EXPECT_TRUE(world.store->hasUnsavedChanges());
    EXPECT_EQ(world.store->items()[1]->imageData(), plainPng());

    world.copy(u"after"_s);
    EXPECT_EQ(QDir(files.blobs()).entryList(QDir::Files).size(), 2) << "no temporary file is left";
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList({u"after"_s, QString::fromUtf8(longText), QString(),
                                          u"short"_s, u"stored"_s}));
    EXPECT_EQ(world.store->items()[2]->imageData(), plainPng());
    EXPECT_TRUE(world.store->items()[4]->isPinned());
}

TEST_F(ClipContainerTest, launchingOnAFullDiskLosesNothing) {
    copyThree();
    world.quit();
    {
        const FullDisk fullDisk;
        ClipContainer::open(world.dataFolder(), world.scheduler);
    }
    world.launch();
    EXPECT_EQ(world.store->items().size(), 3u);
    EXPECT_EQ(QDir(files.folder).entryList({u"*damaged*"_s}), QStringList());
}

TEST_F(ClipContainerTest, anItemStaysWhenItsPayloadIsMissingOrCutShort) {
    copyThree();
    const QFileInfoList payloads = QDir(files.blobs()).entryInfoList(QDir::Files);
    for (const QFileInfo& file : payloads)
        QFile::resize(file.filePath(), 10);
    EXPECT_FALSE(world.newest()->text());
    for (const QFileInfo& file : payloads)
        QFile::remove(file.filePath());
    world.relaunch();
    ASSERT_EQ(world.store->items().size(), 3u);
    EXPECT_FALSE(world.newest()->text());
    EXPECT_FALSE(world.store->items()[1]->imageData());
    EXPECT_EQ(world.store->items()[1]->imageBytes(), plainPng().size());
    world.store->copyToPasteboard(world.store->items()[1], false);
    EXPECT_TRUE(world.pasteboard.types().isEmpty());

    world.copy({{PasteboardType::string, longText}});
    ASSERT_EQ(world.store->items().size(), 3u);
    EXPECT_EQ(world.newest()->text()->toUtf8(), longText) << "the same content came again";
}

TEST_F(ClipContainerTest, oneContainerAtATimeHasTheFolder) {
    const auto second = ClipContainer::open(world.dataFolder(), world.scheduler);
    EXPECT_FALSE(second.container);
    EXPECT_TRUE(second.error.contains(u"Another process"_s));
}

TEST_F(ClipContainerTest, filesThatACrashLeftBehindAreSweptAtLaunch) {
    world.copy({{PasteboardType::png, plainPng()}});
    const QString kept = QDir(files.blobs()).entryList(QDir::Files).value(0);
    world.quit();
    for (const QString& name : {QUuid::createUuid().toString(QUuid::WithoutBraces) + u".png"_s,
                                kept + u".XyZabc"_s, u".hidden"_s})
        replaceContents(files.blobs() + u'/' + name, "left behind");
    world.launch();
    EXPECT_EQ(QDir(files.blobs()).entryList(QDir::Files | QDir::Hidden), QStringList(kept));
    EXPECT_EQ(world.newest()->imageData(), plainPng());
}

TEST_F(ClipContainerTest, aKindOfAnotherTimeIsPreserved) {
    world.copy(u"from the future"_s);
    SqliteConnection(files.database(), SqliteConnection::Access::readWrite)
        .run(u"UPDATE ClipItem SET kindRaw = 'hologram'"_s);
    world.relaunch();
    EXPECT_EQ(world.newest()->kind(), ClipItem::Kind::text);
    world.store->togglePin(world.newest());
    world.relaunch();
    EXPECT_EQ(world.newest()->kindRaw(), u"hologram"_s);
    EXPECT_TRUE(world.newest()->isPinned());
}

TEST_F(ClipContainerTest, deletedContentIsGoneFromTheDisk) {
    const QByteArray secret("correct horse battery staple");
    world.copy({{PasteboardType::string, secret}});
    world.copy({{PasteboardType::string, secret + longText}});
    world.copy({{PasteboardType::fileURL, "file:///home/correct%20horse%20battery%20staple"}});
    world.copy(u"innocent"_s);
    ASSERT_EQ(filesWith(files.folder, secret).size(), 2) << "the log and one payload";
    for (int index = 0; index < 3; ++index)
        world.store->deleteItem(world.store->items().back());
    world.scheduler.advance(std::chrono::seconds(3));
    EXPECT_EQ(filesWith(files.folder, secret), QStringList()) << "while Quillet still runs";
    EXPECT_EQ(world.texts(), QStringList(u"innocent"_s));
}

} // namespace quillet
