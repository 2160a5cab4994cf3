#include "imaging/Bitmap.h"
#include "imaging/Png.h"

#include <gtest/gtest.h>
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

QByteArray bigEndian(quint32 number) {
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray checksum(const QByteArray& bytes) {
    return bigEndian(
        quint32(crc32_z(0, reinterpret_cast<const Bytef*>(bytes.data()), size_t(bytes.size()))));
}

/// A picture of 40 × 20 whose top left quarter is red, with an orientation in an eXIf chunk.
QByteArray orientedPng(int orientation) {
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::white);
    for (int i = 0; i < 20 * 10; ++i)
        image.setPixelColor(i % 20, i / 20, Qt::red);
    const QByteArray exif = QByteArray("MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 19) +
                            char(orientation) + QByteArray(6, '\0');
    const QByteArray checked = "eXIf" + exif;
    QByteArray png = encodePng(image);
    // after signature and header
    png.insert(8 + 25, bigEndian(quint32(exif.size())) + checked + checksum(checked));
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
    EXPECT_TRUE(isCompletePng(png + "trailing bytes"));
    for (const qsizetype length : {qsizetype(0), qsizetype(8), qsizetype(20), png.size() / 2,
                                   png.size() - 12, png.size() - 1})
        EXPECT_FALSE(isCompletePng(png.first(length))) << length;
    QByteArray damaged = png;
    damaged[png.size() / 2] = char(damaged[png.size() / 2] ^ 1);
    EXPECT_FALSE(isCompletePng(damaged));
}

TEST(BitmapTest, damagedAndOversizedImagesAreAbsent) {
    const QImage image = gradient(200, 100, QImage::Format_ARGB32_Premultiplied);
    for (const QByteArray& whole : {encodePng(image), tiffData(image)}) {
        EXPECT_EQ(decodeImage(whole).value().convertToFormat(image.format()), image);
        EXPECT_EQ(imageSize(whole), QSize(200, 100));
        for (const qsizetype length : {qsizetype(0), qsizetype(9), whole.size() / 3})
            EXPECT_FALSE(decodeImage(whole.first(length))) << length;
    }
    EXPECT_FALSE(thumbnail("no image", 100));
    EXPECT_FALSE(isDecodable(encodePng(image).first(300)));

    QByteArray bomb = encodePng(QImage(60000, 1, QImage::Format_Grayscale8));
    bomb.replace(20, 4, bigEndian(60000)); // claims to be a square
    bomb.replace(29, 4, checksum(bomb.mid(12, 17)));
    EXPECT_TRUE(isCompletePng(bomb));
    EXPECT_FALSE(decodeImage(bomb));
    EXPECT_FALSE(thumbnail(bomb, 100));
}

TEST(BitmapTest, thumbnailsAreScaledDownButNeverUp) {
    const QByteArray wide = encodePng(gradient(1000, 10, QImage::Format_RGB32));
    EXPECT_EQ(thumbnail(wide, 520)->size(), QSize(520, 5));
    EXPECT_EQ(thumbnail(wide, 20)->size(), QSize(20, 1)) << "never without a row";
    EXPECT_EQ(thumbnail(wide, 5000)->size(), QSize(1000, 10));
}

TEST(BitmapTest, thumbnailsFollowTheOrientationThatAPngCarries) {
    // By orientation: a point within the red quarter.
    const QPoint red[] = {{5, 5}, {5, 5},  {35, 5},  {35, 15}, {5, 15},
                          {5, 5}, {15, 5}, {15, 35}, {5, 35},  {5, 5}};
    for (int orientation = 0; orientation < 10; ++orientation) {
        const QImage upright = thumbnail(orientedPng(orientation), 520).value();
        const bool isTurned = orientation >= 5 && orientation <= 8;
        EXPECT_EQ(upright.size(), isTurned ? QSize(20, 40) : QSize(40, 20)) << orientation;
        const QPoint opposite = upright.rect().bottomRight() - red[orientation];
        EXPECT_EQ(upright.pixelColor(red[orientation]), QColor(Qt::red)) << orientation;
        EXPECT_EQ(upright.pixelColor(opposite), QColor(Qt::white)) << orientation;
    }
}

} // namespace quillet
