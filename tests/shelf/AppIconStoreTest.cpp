#include "shelf/AppIconStore.h"

#include <gtest/gtest.h>

namespace quillet {
namespace {

QImage icon(const QColor& color) {
    QImage image(48, 48, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

TEST(AppIconStoreTest, theTintFollowsTheSaturatedPixelsAndStaysDark) {
    EXPECT_EQ(dominantColor({}), std::nullopt);
    EXPECT_EQ(dominantColor(icon(QColor(255, 0, 0, 120))), std::nullopt);
    QImage halfWhite = icon(Qt::white);
    for (int i = 0; i < 24 * 48; ++i)
        halfWhite.setPixelColor(i % 24, i / 24, Qt::blue);
    // Weights 1.05 and 0.05: the average is (1, 1, 22) / 22.
    const QColor blue = dominantColor(halfWhite).value();
    EXPECT_NEAR(blue.valueF(), 0.72, 0.01);
    EXPECT_NEAR(blue.hsvSaturationF(), 1.0, 0.01);
    EXPECT_NEAR(blue.hsvHueF(), 2.0 / 3, 0.01);
}

} // namespace
} // namespace quillet
