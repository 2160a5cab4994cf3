#include "shelf/AppIconStore.h"
#include "platform/memory/MemoryWorkspace.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

using namespace Qt::StringLiterals;

const QColor gray(142, 142, 147);

QImage icon(const QColor& color) {
    QImage image(48, 48, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

TEST(AppIconStoreTest, anIconIsLookedUpUntilItIsThereAndATintOnlyOnce) {
    MemoryWorkspace workspace;
    AppIconStore store(workspace);
    EXPECT_EQ(store.icon(std::nullopt), std::nullopt);
    EXPECT_EQ(store.tint(std::nullopt), gray);
    EXPECT_EQ(store.icon(u"org.late"_s), std::nullopt);
    EXPECT_EQ(store.tint(u"org.late"_s), gray);

    workspace.installed[u"org.late"_s] = u"Late"_s;
    workspace.icons[MemoryWorkspace::locationOf(u"org.late"_s)] = icon(Qt::red);
    EXPECT_TRUE(store.icon(u"org.late"_s));
    EXPECT_EQ(store.tint(u"org.late"_s), gray);
    workspace.installed.clear();
    EXPECT_TRUE(store.icon(u"org.late"_s)) << "an icon once found stays for the run";
}

TEST(AppIconStoreTest, theTintFollowsTheSaturatedPixelsAndStaysDark) {
    EXPECT_EQ(dominantColor({}), std::nullopt);
    EXPECT_EQ(dominantColor(icon(Qt::transparent)), std::nullopt);
    EXPECT_EQ(dominantColor(icon(QColor(255, 0, 0, 120))), std::nullopt);

    QImage halfWhite = icon(Qt::white);
    for (int y = 0; y < 48; ++y) {
        for (int x = 0; x < 24; ++x)
            halfWhite.setPixelColor(x, y, Qt::blue);
    }
    // Weights 1.05 and 0.05: the average is (1, 1, 22) / 22.
    const QColor blue = dominantColor(halfWhite).value();
    EXPECT_NEAR(blue.valueF(), 0.72, 0.01);
    EXPECT_NEAR(blue.hsvSaturationF(), 1.0, 0.01);
    EXPECT_NEAR(blue.hsvHueF(), 2.0 / 3, 0.01);

    const QColor muted = dominantColor(icon(QColor(100, 80, 80))).value();
    EXPECT_NEAR(muted.hsvSaturationF(), 0.22, 0.01);
    EXPECT_NEAR(muted.valueF(), 100.0 / 255, 0.01);
}

} // namespace
} // namespace quillet
