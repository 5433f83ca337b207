#include "platform/text/ByteCount.h"

#include <gtest/gtest.h>

#include <limits>

namespace lumisort::text {

TEST(ByteCount, ReadsAsPeopleSaySizes) {
    const struct {
        std::int64_t bytes;
        const char* text;
    } rows[] = {
        {0, "0 bytes"},
        {1, "1 byte"},
        {999, "999 bytes"},
        {1000, "1.0 kB"},
        {999'949, "999.9 kB"},
        {999'950, "1.0 MB"},
        {12'345'678, "12.3 MB"},
        {999'950'000'000, "1.0 TB"},
        {std::numeric_limits<std::int64_t>::max(), "9.2 EB"},
    };
    for (const auto& row : rows) EXPECT_EQ(byteCount(row.bytes), row.text);
}

} // namespace lumisort::text
