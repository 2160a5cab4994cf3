#pragma once

#include <QByteArray>
#include <QImage>

namespace quillet {

/// A picture as a screenshot is one: flat areas, a gradient, lines of "text" and, in `noisy` of
/// its height, a photograph that does not compress. The same for the same arguments.
QImage sampleScreenshot(QSize size, double noisy = 0.2);

QByteArray pngOf(const QImage& image);

/// A valid PNG of exactly `bytes` bytes, at least 200; another one for every `seed`.
QByteArray pngOfSize(qsizetype bytes, quint32 seed = 0);

} // namespace quillet
