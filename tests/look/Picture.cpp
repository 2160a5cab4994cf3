#include "look/Picture.h"

#include <QDir>

namespace quillet {

using namespace Qt::StringLiterals;

namespace {

/// A channel may be off by so much without counting.
constexpr int channelTolerance = 4;
constexpr int alphaTolerance = 4;
/// The share of pixels that may count: edges of glyphs, drawn by another version of a library.
constexpr double pixelShare = 0.002;

bool differs(QRgb a, QRgb b) {
    const auto off = [](int x, int y, int tolerance) { return std::abs(x - y) > tolerance; };
    return off(qRed(a), qRed(b), channelTolerance) || off(qGreen(a), qGreen(b), channelTolerance) ||
           off(qBlue(a), qBlue(b), channelTolerance) || off(qAlpha(a), qAlpha(b), alphaTolerance);
}

} // namespace

testing::AssertionResult matchesPicture(const QImage& actual, const QString& name) {
    const QString path = QStringLiteral(QUILLET_PICTURES "/") + name + u".png"_s;
    if (qEnvironmentVariableIsSet("QUILLET_REWRITE_PICTURES")) {
        return actual.save(path)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "cannot write " << qPrintable(path);
    }
    const QImage expected = QImage(path).convertToFormat(QImage::Format_ARGB32);
    const QImage given = actual.convertToFormat(QImage::Format_ARGB32);
    if (expected.size() != given.size())
        return testing::AssertionFailure() << "another size than " << qPrintable(path);
    QImage difference(given.size(), QImage::Format_RGB32);
    difference.fill(Qt::white);
    qint64 count = 0;
    for (int y = 0; y < given.height(); ++y) {
        for (int x = 0; x < given.width(); ++x) {
            if (differs(given.pixel(x, y), expected.pixel(x, y))) {
                difference.setPixel(x, y, qRgb(255, 0, 0));
                ++count;
            }
        }
    }
    const double share = static_cast<double>(count) / (given.width() * given.height());
    if (share <= pixelShare)
        return testing::AssertionSuccess();
    const QString failure = QStringLiteral(QUILLET_PICTURE_FAILURES "/") + name;
    QDir().mkpath(QStringLiteral(QUILLET_PICTURE_FAILURES));
    actual.save(failure + u"-actual.png"_s);
    expected.save(failure + u"-expected.png"_s);
    difference.save(failure + u"-difference.png"_s);
    return testing::AssertionFailure() << count << " pixels of " << qPrintable(name) << " differ";
}

} // namespace quillet
