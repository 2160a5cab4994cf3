#pragma once

#include <QByteArray>

namespace quillet {

class StatsSampler;

/// A JSON object on one line. `battery` is null where there is none.
QByteArray statsAsJson(const StatsSampler& stats);

/// A line for each figure, its name in front.
QByteArray statsAsTable(const StatsSampler& stats);

/// One line, in columns that stay where they are from one line to the next.
QByteArray statsAsLine(const StatsSampler& stats);

} // namespace quillet
