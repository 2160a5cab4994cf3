#pragma once

#include <optional>
#include <QByteArray>
#include <QImage>

namespace quillet {

// Encoded images of any kind that Qt reads. Functions of values: any thread may call them. Damaged
// bytes, and images that would take more than 256 MiB of pixels, are absent.

/// The image, upright.
std::optional<QImage> decodeImage(const QByteArray& bytes);

/// The size in pixels as stored, before any orientation is applied. Decodes no pixels.
std::optional<QSize> imageSize(const QByteArray& bytes);

/// Whether the bytes hold an image as far as can be told without decoding it.
bool isDecodable(const QByteArray& bytes);

/// The image, upright, with its longer side at `maxPixel` or its own length if that is less.
std::optional<QImage> thumbnail(const QByteArray& bytes, double maxPixel);

/// An uncompressed TIFF of the image; null when it cannot be made.
QByteArray tiffData(const QImage& image);

} // namespace quillet
