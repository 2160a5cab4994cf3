#include "imaging/Bitmap.h"
#include "imaging/Png.h"

#include <gtest/gtest.h>
#include <QBuffer>
#include <QColor>
#include <QtEndian>
#include <zlib.h>

namespace quillet {

namespace {

QImage gradient(int width, int height, QImage::Format format) {
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y,
                                QColor(x * 3 % 256, y * 5 % 256, (x ^ y) % 256, 255 - x % 200));
    }
    return image.convertToFormat(format);
}

/// A picture of 40 × 20 whose top left quarter is red, with an orientation in an eXIf chunk.
QByteArray orientedPng(int orientation) {
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x)
            image.setPixelColor(x, y, Qt::red);
    }
    QByteArray exif("MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 19);
    exif += char(orientation);
    exif += QByteArray(6, '\0');
    QByteArray chunk(4, '\0');
    qToBigEndian(quint32(exif.size()), chunk.data());
    const QByteArray checked = "eXIf" + exif;
    QByteArray checksum(4, '\0');
    qToBigEndian(
        quint32(crc32_z(0, reinterpret_cast<const Bytef*>(checked.data()), size_t(checked.size()))),
        checksum.data());
    QByteArray png = encodePng(image);
    png.insert(8 + 25, chunk + checked + checksum); // after signature and header
    return png;
}

} // namespace

TEST(PngTest, everyKindOfImageComesBackPixelByPixel) {
    for (const auto format :
         {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGB32, QImage::Format_RGBA64,
          QImage::Format_Grayscale8, QImage::Format_Grayscale16, QImage::Format_Indexed8}) {
        const QImage image = gradient(67, 31, format); // rows that do not end on a word
        const auto decoded = decodeImage(encodePng(image));
        ASSERT_TRUE(decoded) << format;
        const bool isDeep = format == QImage::Format_RGBA64 || format == QImage::Format_Grayscale16;
        const auto common = isDeep ? QImage::Format_RGBA64 : QImage::Format_ARGB32;
        EXPECT_EQ(decoded->convertToFormat(common), image.convertToFormat(common)) << format;
    }
    EXPECT_TRUE(encodePng(QImage()).isEmpty());
}

TEST(PngTest, aPngIsCompleteOnlyDownToItsVeryEndAndUndamaged) {
    const QByteArray png = encodePng(gradient(50, 50, QImage::Format_ARGB32));
    EXPECT_TRUE(isCompletePng(png));
    EXPECT_TRUE(isCompletePng(png + "trailing bytes"));
    for (const qsizetype length : {qsizetype(0), qsizetype(7), qsizetype(8), qsizetype(20),
                                   png.size() / 2, png.size() - 12, png.size() - 1})
        EXPECT_FALSE(isCompletePng(png.first(length))) << length;
    QByteArray damaged = png;
    damaged[png.size() / 2] = char(damaged[png.size() / 2] ^ 1);
    EXPECT_FALSE(isCompletePng(damaged));
    EXPECT_FALSE(isCompletePng("GIF89a"));
}

TEST(BitmapTest, damagedAndOversizedImagesAreAbsent) {
    const QImage image = gradient(200, 100, QImage::Format_RGB32);
    for (const QByteArray& whole : {encodePng(image), tiffData(image)}) {
        ASSERT_TRUE(decodeImage(whole));
        EXPECT_EQ(imageSize(whole), QSize(200, 100));
        for (const qsizetype length : {qsizetype(0), qsizetype(9), whole.size() / 3})
            EXPECT_FALSE(decodeImage(whole.first(length))) << length;
    }
    EXPECT_FALSE(thumbnail("no image", 100));
    EXPECT_FALSE(isDecodable(encodePng(image).first(300)));

    QByteArray bomb = encodePng(QImage(60000, 1, QImage::Format_Grayscale8));
    qToBigEndian(quint32(60000), bomb.data() + 20); // claims to be a square
    qToBigEndian(quint32(crc32_z(0, reinterpret_cast<const Bytef*>(bomb.data() + 12), 17)),
                 bomb.data() + 29);
    EXPECT_TRUE(isCompletePng(bomb));
    EXPECT_FALSE(decodeImage(bomb));
    EXPECT_FALSE(thumbnail(bomb, 100));
}

TEST(BitmapTest, tiffKeepsPixelsAndTransparency) {
    const QImage image = gradient(33, 17, QImage::Format_ARGB32_Premultiplied);
    const auto decoded = decodeImage(tiffData(image));
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->convertToFormat(QImage::Format_ARGB32_Premultiplied), image);
}

TEST(BitmapTest, thumbnailsAreScaledDownButNeverUp) {
    const QByteArray wide = encodePng(gradient(1000, 10, QImage::Format_RGB32));
    EXPECT_EQ(thumbnail(wide, 520)->size(), QSize(520, 5));
    EXPECT_EQ(thumbnail(wide, 20)->size(), QSize(20, 1)) << "never without a row";
    EXPECT_EQ(thumbnail(wide, 5000)->size(), QSize(1000, 10));
}

TEST(BitmapTest, thumbnailsFollowTheOrientationThatAPngCarries) {
    struct Expectation {
        int orientation;
        QSize size;
        QPoint red; ///< within the red quarter
    };
    for (const auto& [orientation, size, red] :
         std::initializer_list<Expectation>{{0, {40, 20}, {5, 5}},
                                            {1, {40, 20}, {5, 5}},
                                            {2, {40, 20}, {35, 5}},
                                            {3, {40, 20}, {35, 15}},
                                            {4, {40, 20}, {5, 15}},
                                            {5, {20, 40}, {5, 5}},
                                            {6, {20, 40}, {15, 5}},
                                            {7, {20, 40}, {15, 35}},
                                            {8, {20, 40}, {5, 35}},
                                            {9, {40, 20}, {5, 5}}}) {
        const auto upright = thumbnail(orientedPng(orientation), 520);
        ASSERT_TRUE(upright) << orientation;
        EXPECT_EQ(upright->size(), size) << orientation;
        EXPECT_EQ(upright->pixelColor(red), QColor(Qt::red)) << orientation;
        EXPECT_EQ(upright->pixelColor(size.width() - 1 - red.x(), size.height() - 1 - red.y()),
                  QColor(Qt::white))
            << orientation;
    }
}

} // namespace quillet
