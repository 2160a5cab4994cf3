#include "imaging/Bitmap.h"
#include "imaging/Png.h"

#include <array>
#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QTransform>

namespace quillet {

namespace {

constexpr int largestImageMegabytes = 256;

/// Decodes the image, upright. `scaledSize` has the size to decode at; an invalid one is its own.
std::optional<QImage> decode(const QByteArray& bytes, QSize scaledSize) {
    // Enough for 8192 × 4096 pixels of 16 bits a channel. The limit is the process's, not a
    // reader's.
    [[maybe_unused]] static const bool isLimited =
        (QImageReader::setAllocationLimit(largestImageMegabytes), true);
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (scaledSize.isValid())
        reader.setScaledSize(scaledSize);
    const QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;

    // Qt's reader leaves the orientation of a PNG alone.
    struct Turn {
        bool isMirrored;
        int degrees;
    };
    static constexpr std::array<Turn, 8> turns{{{false, 0},
                                                {true, 0},
                                                {false, 180},
                                                {true, 180},
                                                {true, 270},
                                                {false, 90},
                                                {true, 90},
                                                {false, 270}}};
    const Turn turn = turns[size_t(pngOrientation(bytes) - 1)];
    if (!turn.isMirrored && turn.degrees == 0)
        return image;
    return image.mirrored(turn.isMirrored, false).transformed(QTransform().rotate(turn.degrees));
}

} // namespace

std::optional<QImage> decodeImage(const QByteArray& bytes) {
    return decode(bytes, {});
}

std::optional<QSize> imageSize(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    const QSize size = QImageReader(&buffer).size();
    return size.isEmpty() ? std::nullopt : std::optional(size);
}

bool isDecodable(const QByteArray& bytes) {
    return hasPngSignature(bytes) ? isCompletePng(bytes) : imageSize(bytes).has_value();
}

std::optional<QImage> thumbnail(const QByteArray& bytes, double maxPixel) {
    const auto size = imageSize(bytes);
    if (!size)
        return std::nullopt;
    const int longest = qMax(1, qRound(maxPixel));
    if (qMax(size->width(), size->height()) <= longest)
        return decode(bytes, {});
    return decode(bytes,
                  size->scaled(longest, longest, Qt::KeepAspectRatio).expandedTo(QSize(1, 1)));
}

QByteArray tiffData(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "tiff");
    writer.setCompression(0);
    return writer.write(image) ? buffer.data() : QByteArray();
}

} // namespace quillet
