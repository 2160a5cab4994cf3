#include "stats/StatFormat.h"

#include <array>
#include <charconv>
#include <cmath>

namespace quillet::StatFormat {

using namespace Qt::StringLiterals;

namespace {

/// Rounds as the C library does and, unlike it, asks no locale.
QString fixed(double value, int decimals) {
    std::array<char, 512> digits; // the largest number of all has 309 before its point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals);
    return QString::fromLatin1(digits.data(), end.ptr - digits.data());
}

constexpr double kibi = 1024;
constexpr double mebi = 1024 * kibi;
constexpr double gibi = 1024 * mebi;

} // namespace

QString percent(double fraction) {
    return fixed(std::round(fraction * 100), 0) + u'%';
}

QString rate(double bytesPerSecond) {
    if (bytesPerSecond < kibi)
        return fixed(bytesPerSecond, 0) + u" B/s"_s;
    if (bytesPerSecond < mebi)
        return fixed(bytesPerSecond / kibi, 0) + u" KB/s"_s;
    return fixed(bytesPerSecond / mebi, 1) + u" MB/s"_s;
}

QString gibibytes(uint64_t bytes) {
    return fixed(static_cast<double>(bytes) / gibi, 1);
}

} // namespace quillet::StatFormat
