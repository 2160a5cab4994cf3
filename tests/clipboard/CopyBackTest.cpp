#include "clipboard/ClipContents.h"
#include "imaging/Bitmap.h"
#include "imaging/Png.h"
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

QStringList typesOf(const PasteboardContents& contents) {
    QStringList types;
    for (const PasteboardContent& content : contents)
        types.append(content.type);
    return types;
}

} // namespace

TEST_F(CopyBackTest, anItemReturnsToTheTopWithoutBeingRecordedAnewOrASound) {
    const auto item = record(PasteboardType::string, "back");
    const size_t sounds = world.soundsPlayed();
    world.scheduler.advance(std::chrono::minutes(1));
    world.store->copyToPasteboard(item, false);
    EXPECT_EQ(world.pasteboard.text(), u"back"_s);
    EXPECT_EQ(world.newest(), item);
    EXPECT_EQ(item->createdAt(), world.scheduler.now());
    world.letPoll();
    EXPECT_EQ(world.texts(), QStringList({u"back"_s, u"something else"_s}));
    EXPECT_EQ(world.soundsPlayed(), sounds);
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
    const auto item = record(PasteboardType::string, "https://example.com/ü x\n");
    EXPECT_EQ(item->kind(), ClipItem::Kind::text);
    const auto link = record(PasteboardType::string, "https://example.com/ü\n");
    world.store->copyToPasteboard(link, false);
    EXPECT_EQ(world.pasteboard.types(), QStringList({PasteboardType::string, PasteboardType::url}));
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::string), "https://example.com/ü\n");
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::url), "https://example.com/%C3%BC");
    world.store->copyToPasteboard(link, true);
    EXPECT_EQ(world.pasteboard.types(), QStringList(PasteboardType::string));
}

TEST_F(CopyBackTest, imagesGoBackAsPngAndTiffEvenAfterTheyWereDeleted) {
    QImage image(90, 60, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    const QByteArray png = encodePng(image);
    const auto item = record(PasteboardType::png, png);
    world.store->copyToPasteboard(item, true); // images have no plain form
    world.store->deleteItem(item);
    world.letPoll();
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::png), png);
    const auto tiff = decodeImage(world.pasteboard.bytes(PasteboardType::tiff).value());
    ASSERT_TRUE(tiff);
    EXPECT_EQ(tiff->convertToFormat(QImage::Format_RGB32), image);
}

TEST_F(CopyBackTest, anImageThatDoesNotDecodeGoesBackAsItsBytesOnly) {
    QImage image(90, 60, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    for (const QByteArray& bytes : {QByteArray("not a picture"), encodePng(image).chopped(5)}) {
        const auto item = record(PasteboardType::png, bytes);
        world.store->copyToPasteboard(item, false);
        EXPECT_EQ(world.pasteboard.types(), QStringList(PasteboardType::png));
        EXPECT_EQ(world.pasteboard.bytes(PasteboardType::png), bytes);
    }
}

TEST_F(CopyBackTest, longTextGoesBackFromItsFile) {
    const QByteArray text = QByteArray("ü \0", 4).repeated(50'000);
    const auto item = record(PasteboardType::string, text);
    world.store->copyToPasteboard(item, false);
    world.store->clear(false);
    EXPECT_EQ(world.pasteboard.bytes(PasteboardType::string), text);
}

TEST(ClipContentsTest, anItemOfAnUnknownKindOrWithoutContentBehavesAsText) {
    ClipItem::Fields fields;
    fields.kindRaw = u"hologram"_s;
    EXPECT_EQ(ClipItem(fields).kind(), ClipItem::Kind::text);
    const auto contents = pasteboardContents(ClipItem(fields), false);
    ASSERT_EQ(typesOf(contents), QStringList(PasteboardType::string));
    EXPECT_EQ(contents[0].bytes(), "");
    fields.kindRaw = u"image"_s;
    EXPECT_TRUE(pasteboardContents(ClipItem(fields), false).empty());
}

} // namespace quillet
