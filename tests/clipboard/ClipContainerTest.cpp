#include "clipboard/StoreFiles.h"
#include "imaging/Png.h"
#include "support/World.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

QByteArray somePng() {
    QImage image(60, 40, QImage::Format_RGB32);
    image.fill(Qt::darkYellow);
    return encodePng(image);
}

int modeOf(const QString& path) {
    struct stat status {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? int(status.st_mode & 0777)
                                                                   : -1;
}

class ClipContainerTest : public testing::Test {
protected:
    World world;
    const ClipFiles files{world.dataFolder()};
    const QByteArray longText = QByteArray("long ü ").repeated(20'000);
};

} // namespace

TEST_F(ClipContainerTest, everythingIsReadableByItsOwnerOnly) {
    world.copy(u"text"_s);
    world.copy({{PasteboardType::png, somePng()}});
    world.copy({{PasteboardType::string, longText}});
    EXPECT_EQ(modeOf(files.folder), 0700);
    EXPECT_EQ(modeOf(files.blobs()), 0700);
    QDirIterator stored(files.folder, QDir::Files, QDirIterator::Subdirectories);
    int count = 0;
    for (; stored.hasNext(); ++count) {
        const QString path = stored.next();
        EXPECT_EQ(modeOf(path), 0600) << qPrintable(path);
    }
    EXPECT_GE(count, 5) << "database, its log and index, two payloads";
}

TEST_F(ClipContainerTest, aFolderThatCannotBeUsedIsAnErrorWithAReason) {
    const QString occupied = world.dataFolder() + u"/file"_s;
    replaceContents(occupied, "x");
    for (const QString& folder : {occupied, u"/proc/quillet"_s}) {
        const auto opening = ClipContainer::open(folder, world.scheduler);
        EXPECT_FALSE(opening.container);
        EXPECT_TRUE(opening.error.contains(folder)) << qPrintable(opening.error);
    }
}

TEST_F(ClipContainerTest, whatAFullDiskRefusesIsKeptAndWrittenByTheNextSave) {
    world.copy(u"stored"_s);
    world.copy(u"to be deleted"_s);
    {
        const FullDisk fullDisk;
        world.store->deleteItem(world.newest());
        world.store->togglePin(world.newest());
        world.copy(u"short"_s);
        world.copy({{PasteboardType::png, somePng()}});
        world.copy({{PasteboardType::string, longText}});
    }
    EXPECT_TRUE(world.store->hasUnsavedChanges());
    ASSERT_EQ(world.store->items().size(), 4u);
    EXPECT_EQ(world.store->items()[1]->imageData(), somePng());
    EXPECT_EQ(world.newest()->text()->toUtf8(), longText);

    world.copy(u"after"_s);
    EXPECT_EQ(QDir(files.blobs()).entryList(QDir::Files).size(), 2) << "no temporary file is left";
    world.relaunch();
    ASSERT_EQ(world.store->items().size(), 5u);
    EXPECT_EQ(world.store->items()[1]->text()->toUtf8(), longText);
    EXPECT_EQ(world.store->items()[2]->imageData(), somePng());
    EXPECT_EQ(world.store->items()[4]->text(), u"stored"_s);
    EXPECT_TRUE(world.store->items()[4]->isPinned());
}

TEST_F(ClipContainerTest, launchingOnAFullDiskLosesNothing) {
    world.copy(u"text"_s);
    world.copy({{PasteboardType::png, somePng()}});
    world.quit();
    {
        const FullDisk fullDisk;
        ClipContainer::open(world.dataFolder(), world.scheduler);
    }
    world.launch();
    ASSERT_EQ(world.store->items().size(), 2u);
    EXPECT_EQ(world.newest()->imageData(), somePng());
    EXPECT_EQ(QDir(files.folder).entryList({u"*damaged*"_s}), QStringList());
}

TEST_F(ClipContainerTest, anItemStaysWhenItsPayloadIsMissingOrCutShort) {
    world.copy({{PasteboardType::string, longText}});
    world.copy({{PasteboardType::png, somePng()}});
    for (const QFileInfo& file : QDir(files.blobs()).entryInfoList(QDir::Files))
        QFile::resize(file.filePath(), 10);
    EXPECT_FALSE(world.newest()->imageData());
    EXPECT_FALSE(world.newest()->imageSource());
    for (const QFileInfo& file : QDir(files.blobs()).entryInfoList(QDir::Files))
        QFile::remove(file.filePath());
    world.relaunch();
    ASSERT_EQ(world.store->items().size(), 2u);
    EXPECT_FALSE(world.store->items()[0]->imageData());
    EXPECT_FALSE(world.store->items()[1]->text());
    EXPECT_EQ(world.store->items()[0]->imageBytes(), somePng().size());
    world.store->copyToPasteboard(world.newest(), false);
    EXPECT_TRUE(world.pasteboard.types().isEmpty());

    world.copy({{PasteboardType::string, longText}});
    ASSERT_EQ(world.store->items().size(), 2u);
    EXPECT_EQ(world.newest()->text()->toUtf8(), longText) << "the same content came again";
}

TEST_F(ClipContainerTest, oneContainerAtATimeHasTheFolder) {
    const auto second = ClipContainer::open(world.dataFolder(), world.scheduler);
    EXPECT_FALSE(second.container);
    EXPECT_TRUE(second.error.contains(u"Another process"_s));
}

TEST_F(ClipContainerTest, filesThatACrashLeftBehindAreSweptAtLaunch) {
    world.copy({{PasteboardType::png, somePng()}});
    const QString kept = QDir(files.blobs()).entryList(QDir::Files).value(0);
    world.quit();
    for (const QString& name : {QUuid::createUuid().toString(QUuid::WithoutBraces) + u".png"_s,
                                kept + u".XyZabc"_s, u".hidden"_s})
        replaceContents(files.blobs() + u'/' + name, "left behind");
    world.launch();
    EXPECT_EQ(QDir(files.blobs()).entryList(QDir::Files | QDir::Hidden), QStringList(kept));
    EXPECT_EQ(world.newest()->imageData(), somePng());
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
    world.copy(QString::fromLatin1(secret));
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

TEST_F(ClipContainerTest, theContextHasOneObjectPerRecord) {
    world.copy(u"a"_s);
    ClipContext& context = world.container->mainContext();
    EXPECT_EQ(context.fetch(ClipContext::Filter::all)->front(), world.newest());
    world.store->togglePin(world.newest());
    EXPECT_TRUE(context.fetch(ClipContext::Filter::unpinned)->empty()) << "unsaved changes count";
}

} // namespace quillet
