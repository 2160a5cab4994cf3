#pragma once

namespace quillet {

class FigureTable;

/// What a sample of the machine's statistics costs, that nothing runs while nobody looks, and how
/// far the figures are from what other programs read at the same time. Needs a QCoreApplication.
void measureStatistics(FigureTable& table);

} // namespace quillet
