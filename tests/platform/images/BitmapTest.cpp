#include "platform/images/Bitmap.h"

#include <gtest/gtest.h>

#include <vector>

namespace lumisort::images {
namespace {

TEST(Bitmap, HasNoSizeThatItsPixelsDoNotFill) {
    EXPECT_THROW(Bitmap(0, 5), std::invalid_argument);
    EXPECT_THROW(Bitmap(-2, -2), std::invalid_argument);
    EXPECT_THROW(Bitmap(2, 2, std::vector<std::uint8_t>(15)), std::invalid_argument);
    Bitmap moved(1, 2, std::vector<std::uint8_t>{1, 2, 3, 4, 5, 6, 7, 8});
    const auto copy = moved.clone();
    const auto taken = std::move(moved);
    EXPECT_TRUE(moved.isEmpty()); // NOLINT(bugprone-use-after-move): that is the question
    EXPECT_EQ(taken.row(1)[3], 8);
    EXPECT_EQ(copy.row(1)[3], 8);
}

} // namespace
} // namespace lumisort::images
