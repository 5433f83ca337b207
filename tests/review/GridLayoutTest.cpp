#include "review/GridLayout.h"

#include <gtest/gtest.h>

namespace lumisort::review {

TEST(GridLayout, MovesByRowsWithinRaggedGroups) {
    //  0 1 2
    //  3 4
    //  5 6
    //  7 8 9
    //  10
    const GridLayout layout({5, 2, 0, 4}, 3);
    ASSERT_EQ(layout.size(), 11u);
    ASSERT_EQ(layout.rows().size(), 5u);
    EXPECT_EQ(layout.rows()[2].group, 1u);
    EXPECT_EQ(layout.rows()[3].group, 3u);
    struct Case {
        std::size_t from;
        std::ptrdiff_t rows;
        std::size_t to;
    };
    for (const auto& [from, rows, to] :
         {Case{0, 1, 3}, Case{2, 1, 4}, Case{4, 1, 6}, Case{6, 1, 8}, Case{9, 1, 10}, Case{10, 1, 10},
          Case{10, -1, 7}, Case{1, -1, 1}, Case{4, 100, 10}, Case{9, -100, 2}})
        EXPECT_EQ(layout.moved(from, rows), to) << from << " by " << rows;
}

} // namespace lumisort::review
