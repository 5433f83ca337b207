
#include "platform/images/Decoder.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace lumisort::images {
namespace {

TEST(JpegEncoder, WritesWhatTheDecoderReads) {
    Bitmap half(64, 48, std::vector<std::uint8_t>(4 * 64 * 48, 0));
    for (std::size_t pixel = 0; pixel < 32 * 48; ++pixel) // an orange half above a transparent one
        std::ranges::copy(std::array<std::uint8_t, 4>{240, 120, 20, 255}, half.rgba().begin() + 4 * pixel);
    const test::TemporaryFolder folder;
    const auto url = folder.write("t.jpg", decoder().encodeJpeg(half, 90, 255));
    EXPECT_EQ(decoder().identify(url), ImageType::jpeg);
    const auto read = decoder().thumbnail(url, 64);
    ASSERT_EQ(std::pair(read.width(), read.height()), std::pair(64, 48));
    const auto near = [&](std::size_t pixel, int red, int green, int blue) {
        EXPECT_NEAR(read.rgba()[4 * pixel], red, 6);
        EXPECT_NEAR(read.rgba()[4 * pixel + 1], green, 6);
        EXPECT_NEAR(read.rgba()[4 * pixel + 2], blue, 6);
    };
    near(64 * 8 + 20, 240, 120, 20);
    near(64 * 40 + 20, 255, 255, 255);
}

} // namespace
} // namespace lumisort::images
