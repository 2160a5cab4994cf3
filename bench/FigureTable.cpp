#include "FigureTable.h"

#include <cstdio>

namespace quillet {

void FigureTable::add(const std::string& name, double figure, double limit,
                      const std::string& unit) {
    const bool over = figure > limit;
    m_over += over;
    std::printf("%-52s %10.2f  limit %8.2f  %-8s %s\n", name.c_str(), figure, limit, unit.c_str(),
                over ? "OVER" : "ok");
    std::fflush(stdout);
}

void FigureTable::note(const std::string& name, double figure, const std::string& unit) {
    std::printf("%-52s %10.2f                  %s\n", name.c_str(), figure, unit.c_str());
    std::fflush(stdout);
}

} // namespace quillet
