#pragma once

#include <cstdint>
#include <QString>

/// Figures as short texts, with a point for the decimals in every language.
namespace quillet::StatFormat {

/// A whole percentage: 0.375 is "38%". The fraction must be finite.
QString percent(double fraction);

/// In the unit that suits it: "512 B/s", "2 KB/s", "1.0 MB/s".
QString rate(double bytesPerSecond);

/// How many times 2^30 bytes, with one decimal and no unit.
QString gibibytes(uint64_t bytes);

} // namespace quillet::StatFormat
