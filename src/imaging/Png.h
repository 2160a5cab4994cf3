#pragma once

#include <QByteArray>
#include <QImage>

namespace quillet {

// PNG as bytes. Functions of values: any thread may call them.

/// A PNG of the image at its own depth, written for speed rather than for the last byte. Empty
/// when the image is null.
QByteArray encodePng(const QImage& image);

bool hasPngSignature(QByteArrayView bytes);

/// Whether these are the bytes of a PNG down to its end, every chunk undamaged. Decodes nothing.
bool isCompletePng(QByteArrayView bytes);

/// Whether a file that begins and ends with these bytes is a PNG that was not cut off. The first
/// 64 bytes and the last 12 are enough; what lies between may still be damaged.
bool isPngFromStartToEnd(QByteArrayView first, QByteArrayView last);

/// The EXIF orientation that a PNG carries, 1 to 8; 1 (upright) where it carries none.
int pngOrientation(QByteArrayView bytes);

} // namespace quillet
