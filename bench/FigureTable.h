#pragma once

#include <string>

namespace quillet {

/// The figures of a benchmark, printed line by line as they come in, each with what it must not
/// exceed.
class FigureTable {
public:
    void add(const std::string& name, double figure, double limit, const std::string& unit);

    /// A figure without a limit, to understand the others by.
    void note(const std::string& name, double figure, const std::string& unit);

    /// A figure that is a list of faults, and has to be empty.
    void addFaults(const std::string& name, int faults) { add(name, faults, 0, "faults"); }

    bool allWithinLimits() const { return m_over == 0; }

private:
    int m_over = 0;
};

} // namespace quillet
