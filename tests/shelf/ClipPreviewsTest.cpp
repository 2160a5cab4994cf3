#include "shelf/ClipPreviews.h"
#include "support/SamplePictures.h"
#include "support/World.h"

#include <gtest/gtest.h>
#include <QDir>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

class ClipPreviewsTest : public testing::Test {
protected:
    void letRead() { world.scheduler.advance(std::chrono::milliseconds(1)); }

    World world;
    ThumbnailCache thumbnails;
    ClipPreviews previews{world.scheduler, thumbnails};
};

TEST_F(ClipPreviewsTest, shortTextsAreThereAtOnceAndLongOnesInPartLater) {
    world.copy(u"hello"_s);
    EXPECT_EQ(previews.preview(*world.newest()).value().text, u"hello"_s);
    // An emoji lies across the end of the part that is shown.
    world.copy(QString(1999, u'x') + u"😀"_s + QString(50'000, u'y'));
    EXPECT_FALSE(previews.preview(*world.newest()));
    letRead();
    const ClipPreview preview = previews.preview(*world.newest()).value();
    EXPECT_EQ(preview.text, QString(1999, u'x'));
    EXPECT_EQ(preview.characters, 52'000);
}

TEST_F(ClipPreviewsTest, imagesAreDecodedOneAtATimeAndAgainWhenTheirThumbnailIsGone) {
    for (int width = 600; width < 603; ++width)
        world.copy({{PasteboardType::png, pngOf(sampleScreenshot({width, 400}))}});
    const ClipItems items = world.store->items();
    int ready = 0;
    previews.onReady = [&ready] { ++ready; };
    for (const auto& item : items)
        EXPECT_FALSE(previews.preview(*item));
    letRead();
    EXPECT_EQ(ready, 1);
    EXPECT_TRUE(previews.preview(*items[0]));
    EXPECT_FALSE(previews.preview(*items[2])) << "nobody asked again until now";
    letRead();
    const ClipPreview preview = previews.preview(*items[2]).value();
    EXPECT_EQ(preview.pixels, QSize(600, 400));
    EXPECT_EQ(preview.thumbnail.value().size(), QSize(520, 346));

    thumbnails.drop(*items[2]);
    previews.preview(*items[2]);
    letRead();
    EXPECT_TRUE(previews.preview(*items[2]).value().thumbnail);
}

TEST_F(ClipPreviewsTest, anImageThatCannotBeReadIsAskedForOnce) {
    world.copy({{PasteboardType::png, pngOf(sampleScreenshot({600, 400}))}});
    ASSERT_TRUE(QDir(world.dataFolder() + u"/blobs"_s).removeRecursively());
    EXPECT_FALSE(previews.preview(*world.newest()));
    letRead();
    int ready = 0;
    previews.onReady = [&ready] { ++ready; };
    const ClipPreview preview = previews.preview(*world.newest()).value();
    letRead();
    EXPECT_EQ(preview.thumbnail, std::nullopt);
    EXPECT_EQ(ready, 0);
}

} // namespace
} // namespace quillet
