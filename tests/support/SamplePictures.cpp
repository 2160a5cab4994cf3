#include "support/SamplePictures.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QtEndian>
#include <vector>
#include <zlib.h>

namespace quillet {

namespace {

constexpr qsizetype chunkFrame = 12; // length, name and check sum of a PNG chunk
constexpr qsizetype headerEnd = 33;  // the signature and the first chunk

QByteArray randomBytes(qsizetype count, quint32 seed) {
    std::vector<quint32> words(static_cast<size_t>(count + 3) / 4);
    QRandomGenerator(seed).generate(words.begin(), words.end());
    return {reinterpret_cast<const char*>(words.data()), count};
}

QByteArray bigEndian(quint32 value) {
    const quint32 swapped = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&swapped), sizeof swapped};
}

} // namespace

QImage sampleScreenshot(QSize size, double noisy) {
    QImage image(size, QImage::Format_RGB32);
    QRandomGenerator random(7);
    const int photograph = static_cast<int>(size.height() * (1 - noisy));
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const bool textLine = y % 20 < 12;
        for (int x = 0; x < size.width(); ++x) {
            if (y >= photograph)
                line[x] = random.generate() | 0xff000000u;
            else if (textLine && x % 900 > 60)
                line[x] = (x / 3 * 31 + y / 20 * 17 + y % 20 * 7) % 11 < 3 ? qRgb(40, 40, 40)
                                                                           : qRgb(255, 255, 255);
            else
                line[x] = qRgb(230 + y * 20 / size.height(), 235, 240);
        }
    }
    return image;
}

QByteArray pngOf(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray pngOfSize(qsizetype bytes, quint32 seed) {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(seed);
    QByteArray png = pngOf(image);
    // A chunk that decoders pass over makes up the rest.
    const qsizetype padding = bytes - png.size() - chunkFrame;
    const QByteArray named = "quLt" + randomBytes(padding, seed);
    const auto sum = crc32_z(0, reinterpret_cast<const Bytef*>(named.constData()),
                             static_cast<z_size_t>(named.size()));
    png.insert(headerEnd, bigEndian(static_cast<quint32>(padding)) + named +
                              bigEndian(static_cast<quint32>(sum)));
    return png;
}

} // namespace quillet
