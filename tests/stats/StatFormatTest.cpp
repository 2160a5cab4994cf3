#include "stats/StatFormat.h"

#include <gtest/gtest.h>

namespace quillet {

TEST(StatFormatTest, sharesAreRoundedAwayFromZero) {
    EXPECT_EQ(StatFormat::percent(0), u"0%");
    EXPECT_EQ(StatFormat::percent(0.374), u"37%");
    EXPECT_EQ(StatFormat::percent(0.375), u"38%");
    EXPECT_EQ(StatFormat::percent(0.005), u"1%");
    EXPECT_EQ(StatFormat::percent(1), u"100%");
}

TEST(StatFormatTest, theUnitOfARateIsChosenBeforeItIsRounded) {
    struct Row {
        double rate;
        const char* text;
    };
    const Row rows[] = {{0, "0 B/s"},
                        {2.5, "2 B/s"}, // halves go to the even number
                        {1023.6, "1024 B/s"},
                        {1024, "1 KB/s"},
                        {1536, "2 KB/s"},
                        {1048575, "1024 KB/s"},
                        {1048576, "1.0 MB/s"},
                        {1.26 * 1048576, "1.3 MB/s"},
                        {5e12, "4768371.6 MB/s"}};
    for (const Row& row : rows)
        EXPECT_EQ(StatFormat::rate(row.rate), QLatin1StringView(row.text));
}

TEST(StatFormatTest, memoryHasOneDecimal) {
    EXPECT_EQ(StatFormat::gibibytes(0), u"0.0");
    EXPECT_EQ(StatFormat::gibibytes(7838315315), u"7.3");
    EXPECT_EQ(StatFormat::gibibytes(uint64_t{64} << 30), u"64.0");
}

} // namespace quillet
