#include "stats/StatFormat.h"

#include <gtest/gtest.h>

namespace quillet {

TEST(StatFormatTest, everyFigureIsRoundedByItsOwnRule) {
    const std::pair<QString, const char*> rows[] = {
        {StatFormat::percent(0.374), "37%"},        {StatFormat::percent(0.375), "38%"},
        {StatFormat::percent(0.005), "1%"},         {StatFormat::rate(0), "0 B/s"},
        {StatFormat::rate(2.5), "2 B/s"},       // halves go to the even number
        {StatFormat::rate(1023.6), "1024 B/s"}, // the unit is chosen before
        {StatFormat::rate(1024), "1 KB/s"},         {StatFormat::rate(1048576), "1.0 MB/s"},
        {StatFormat::rate(5e12), "4768371.6 MB/s"}, {StatFormat::gibibytes(0), "0.0"},
        {StatFormat::gibibytes(7838315315), "7.3"}};
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(text, QLatin1StringView(expected));
}

} // namespace quillet
