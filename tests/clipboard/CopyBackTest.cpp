#include "imaging/Bitmap.h"
#include "support/World.h"

#include <gtest/gtest.h>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

class CopyBackTest : public testing::Test {
protected:
    /// Copies, then something else so that it is no longer on the pasteboard.
    std::shared_ptr<ClipItem> record(const QString& type, const QByteArray& bytes) {
        world.copy({{type, bytes}});
        auto item = world.newest();
        world.copy(u"something else"_s);
        return item;
    }

    World world;
};

} // namespace

TEST_F(CopyBackTest, anItemReturnsToTheTopWithoutBeingRecordedAnewOrASound) {
    const auto item = record(PasteboardType::string, "back");
    world.scheduler.advance(std::chrono::minutes(1));
    world.store->copyToPasteboard(item, false);
    EXPECT_EQ(world.pasteboard.text(), u"back"_s);
    EXPECT_EQ(item->createdAt(), world.scheduler.now());
    world.letPoll();
    EXPECT_EQ(world.soundsPlayed(), 2u);
    world.relaunch();
    EXPECT_EQ(world.texts(), QStringList({u"back"_s, u"something else"_s}));
}

TEST_F(CopyBackTest, anItemUsedWhileALargeCopyIsWorkedOnStaysAboveIt) {
    const auto item = record(PasteboardType::string, "back");
    world.scheduler.holdBackground();
    world.copy(QString(300'000, u'x'));
    world.store->copyToPasteboard(item, false);
    world.scheduler.releaseBackground();
    world.letPoll();
    EXPECT_EQ(world.newest(), item);
    EXPECT_EQ(world.store->items().size(), 3u);
}

TEST_F(CopyBackTest, linksOfferTheirAddressToo) {
    const auto link = record(PasteboardType::string, "https://example.com/ü\n");
    world.store->copyToPasteboard(link, false);
    EXPECT_EQ(world.pasteboard.types(), QStringList({PasteboardType::string, PasteboardType::url}));
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::string), "https://example.com/ü\n");
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::url), "https://example.com/%C3%BC");
    world.store->copyToPasteboard(link, true);
    EXPECT_EQ(world.pasteboard.types(), QStringList(PasteboardType::string));
}

TEST_F(CopyBackTest, imagesAndLongTextsStayOnThePasteboardAfterTheyWereDeleted) {
    const auto image = record(PasteboardType::png, plainPng());
    world.store->copyToPasteboard(image, true); // images have no plain form
    world.store->deleteItem(image);
    world.letPoll();
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::png), plainPng());
    const auto tiff = decodeImage(world.pasteboard.bytes(PasteboardType::tiff).value());
    ASSERT_TRUE(tiff);
    EXPECT_EQ(tiff->convertToFormat(QImage::Format_RGB32), decodeImage(plainPng()));

    const QByteArray text = QByteArray("ü \0", 4).repeated(50'000);
    world.store->copyToPasteboard(record(PasteboardType::string, text), false);
    world.store->clear(false);
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::string), text);
}

TEST_F(CopyBackTest, anImageThatDoesNotDecodeGoesBackAsItsBytesOnly) {
    for (const QByteArray& bytes : {QByteArray("not a picture"), plainPng().chopped(5)}) {
        world.store->copyToPasteboard(record(PasteboardType::png, bytes), false);
        EXPECT_EQ(world.pasteboard.types(), QStringList(PasteboardType::png));
        EXPECT_EQ(world.pasteboard.bytes(PasteboardType::png), bytes);
    }
}

} // namespace quillet
