#include "platform/Geometry.h"

#include <gtest/gtest.h>

namespace quillet {

TEST(GeometryTest, intersectionIsTheCommonPartAndIntegralGrowsOutwards) {
    const Rect square{{0, 0}, {10, 10}};
    struct Row {
        Rect other;
        Rect common;
    };
    for (const Row& row :
         {Row{{{-5, 5}, {10, 10}}, {{0, 5}, {5, 5}}}, Row{{{2, 3}, {4, 4}}, {{2, 3}, {4, 4}}},
          Row{{{10, 0}, {5, 5}}, {}}, // touching is not overlapping
          Row{{{20, 20}, {5, 5}}, {}}}) {
        EXPECT_EQ(square.intersection(row.other), row.common);
        EXPECT_EQ(row.other.intersection(square), row.common);
    }
    EXPECT_EQ(square.inset(2, 3), (Rect{{2, 3}, {6, 4}}));
    EXPECT_TRUE(square.inset(5, 1).isEmpty());
    EXPECT_EQ(square.integral(), square);
    EXPECT_EQ((Rect{{-0.25, 1.5}, {2, 2.75}}.integral()), (Rect{{-1, 1}, {3, 4}}));
}

TEST(GeometryTest, aPointOnAnEdgeBelongsToOneOfTwoNeighbours) {
    struct Row {
        Point point;
        bool inside;
        bool pointerInside;
    };
    const Rect square{{0, 0}, {10, 10}};
    for (const Row& row :
         {Row{{5, 5}, true, true}, Row{{0, 5}, true, true}, Row{{10, 5}, false, false},
          Row{{5, 0}, true, false}, Row{{5, 10}, false, true}, Row{{5, 10.5}, false, false}}) {
        EXPECT_EQ(square.contains(row.point), row.inside) << row.point.x << ", " << row.point.y;
        EXPECT_EQ(square.containsPointer(row.point), row.pointerInside)
            << row.point.x << ", " << row.point.y;
    }
}

} // namespace quillet
