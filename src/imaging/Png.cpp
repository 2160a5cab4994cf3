#include "imaging/Png.h"

#include <limits>
#include <memory>
#include <optional>
#include <QtEndian>
#include <spng.h>
#include <zlib.h>

namespace quillet {

namespace {

constexpr QByteArrayView pngSignature("\x89PNG\r\n\x1a\n", 8);
constexpr qsizetype chunkOverhead = 12; // length, type and checksum

struct Chunk {
    QByteArrayView type;
    QByteArrayView data;
    bool isIntact = false;
};

/// Splits the next chunk off the front of `rest`; absent when the bytes end within it.
std::optional<Chunk> takeChunk(QByteArrayView& rest) {
    if (rest.size() < chunkOverhead)
        return std::nullopt;
    const auto length = qFromBigEndian<quint32>(rest.data());
    if (length > std::numeric_limits<qint32>::max() || rest.size() - chunkOverhead < length)
        return std::nullopt;
    const QByteArrayView checked = rest.sliced(4, 4 + qsizetype(length));
    const auto checksum = qFromBigEndian<quint32>(checked.data() + checked.size());
    const auto actual =
        crc32_z(0, reinterpret_cast<const Bytef*>(checked.data()), size_t(checked.size()));
    rest = rest.sliced(chunkOverhead + qsizetype(length));
    return Chunk{checked.first(4), checked.sliced(4), actual == checksum};
}

/// The orientation tag of a TIFF directory, which is what EXIF data is.
int exifOrientation(QByteArrayView exif) {
    constexpr quint16 orientationTag = 0x0112;
    constexpr qsizetype entrySize = 12;
    const bool isLittleEndian = exif.startsWith("II");
    if (exif.size() < 8 || (!isLittleEndian && !exif.startsWith("MM")))
        return 1;
    const auto number16 = [&](qsizetype at) {
        const char* bytes = exif.data() + at;
        return isLittleEndian ? qFromLittleEndian<quint16>(bytes) : qFromBigEndian<quint16>(bytes);
    };
    const char* offsetBytes = exif.data() + 4;
    const qsizetype directory = isLittleEndian ? qFromLittleEndian<quint32>(offsetBytes)
                                               : qFromBigEndian<quint32>(offsetBytes);
    if (directory > exif.size() - 2)
        return 1;
    const int count = number16(directory);
    for (int index = 0; index < count; ++index) {
        const qsizetype entry = directory + 2 + index * entrySize;
        if (entry > exif.size() - entrySize)
            return 1;
        if (number16(entry) != orientationTag)
            continue;
        const int orientation = number16(entry + 8);
        return orientation >= 1 && orientation <= 8 ? orientation : 1;
    }
    return 1;
}

struct PngLayout {
    QImage::Format format;
    spng_color_type colorType;
    quint8 bitDepth;
};

PngLayout layoutFor(const QImage& image) {
    const bool isDeep = image.pixelFormat().redSize() > 8 || image.pixelFormat().blackSize() > 8 ||
                        image.format() == QImage::Format_Grayscale16;
    if (image.format() == QImage::Format_Grayscale16)
        return {QImage::Format_Grayscale16, SPNG_COLOR_TYPE_GRAYSCALE, 16};
    if (image.format() == QImage::Format_Grayscale8)
        return {QImage::Format_Grayscale8, SPNG_COLOR_TYPE_GRAYSCALE, 8};
    if (isDeep)
        return {QImage::Format_RGBA64, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 16};
    if (image.hasAlphaChannel())
        return {QImage::Format_RGBA8888, SPNG_COLOR_TYPE_TRUECOLOR_ALPHA, 8};
    return {QImage::Format_RGB888, SPNG_COLOR_TYPE_TRUECOLOR, 8};
}

} // namespace

QByteArray encodePng(const QImage& image) {
    if (image.isNull())
        return {};
    const PngLayout layout = layoutFor(image);
    const QImage pixels = image.convertToFormat(layout.format);

    const std::unique_ptr<spng_ctx, void (*)(spng_ctx*)> context(spng_ctx_new(SPNG_CTX_ENCODER),
                                                                 spng_ctx_free);
    spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1);
    spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, 1);
    spng_set_option(context.get(), SPNG_FILTER_CHOICE, SPNG_FILTER_CHOICE_NONE);
    spng_ihdr header{};
    header.width = quint32(pixels.width());
    header.height = quint32(pixels.height());
    header.bit_depth = layout.bitDepth;
    header.color_type = layout.colorType;
    spng_set_ihdr(context.get(), &header);

    // Row by row, since the rows of a QImage may be padded.
    int status = spng_encode_image(context.get(), nullptr, 0, SPNG_FMT_PNG,
                                   SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE);
    const auto rowBytes = size_t(pixels.width()) * size_t(pixels.depth()) / 8;
    for (int row = 0; status == SPNG_OK && row < pixels.height(); ++row)
        status = spng_encode_row(context.get(), pixels.constScanLine(row), rowBytes);
    if (status != SPNG_EOI)
        return {};

    size_t size = 0;
    const std::unique_ptr<void, void (*)(void*)> bytes(
        spng_get_png_buffer(context.get(), &size, &status), free);
    return bytes ? QByteArray(static_cast<const char*>(bytes.get()), qsizetype(size))
                 : QByteArray();
}

bool hasPngSignature(QByteArrayView bytes) {
    return bytes.startsWith(pngSignature);
}

bool isCompletePng(QByteArrayView bytes) {
    if (!hasPngSignature(bytes))
        return false;
    QByteArrayView rest = bytes.sliced(pngSignature.size());
    const auto header = takeChunk(rest);
    if (!header || header->type != "IHDR" || header->data.size() != 13 || !header->isIntact)
        return false;
    bool hasPixels = false;
    while (const auto chunk = takeChunk(rest)) {
        if (!chunk->isIntact)
            return false;
        if (chunk->type == "IEND")
            return hasPixels;
        hasPixels |= chunk->type == "IDAT";
    }
    return false;
}

bool isPngFromStartToEnd(QByteArrayView first, QByteArrayView last) {
    if (!hasPngSignature(first))
        return false;
    QByteArrayView rest = first.sliced(pngSignature.size());
    const auto header = takeChunk(rest);
    const auto end = takeChunk(last);
    return header && header->type == "IHDR" && header->isIntact && end && end->type == "IEND" &&
           end->isIntact;
}

int pngOrientation(QByteArrayView bytes) {
    if (!hasPngSignature(bytes))
        return 1;
    QByteArrayView rest = bytes.sliced(pngSignature.size());
    while (const auto chunk = takeChunk(rest)) {
        if (chunk->type == "eXIf")
            return chunk->isIntact ? exifOrientation(chunk->data) : 1;
    }
    return 1;
}

} // namespace quillet
