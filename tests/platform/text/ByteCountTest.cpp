#include "platform/text/ByteCount.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumisort::text {

TEST(ByteCount, ChangesTheUnitWhereRoundingReachesIt) {
    EXPECT_EQ(byteCount(1), "1 byte");
    EXPECT_EQ(byteCount(999), "999 bytes");
    EXPECT_EQ(byteCount(1000), "1.0 kB");
    EXPECT_EQ(byteCount(999'949), "999.9 kB");
    EXPECT_EQ(byteCount(999'950), "1.0 MB");
    EXPECT_EQ(byteCount(1'049'960'000), "1.0 GB"); // not by way of 1,050.0 MB
    EXPECT_EQ(byteCount(std::numeric_limits<std::int64_t>::max()), "9.2 EB");
}

} // namespace lumisort::text
