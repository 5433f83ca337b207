#include "similarity/FingerprintCanvas.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

namespace lumisort::similarity {
namespace {

using Pixel = std::array<std::uint8_t, 4>;

template <class Color>
images::Bitmap bitmap(int width, int height, Color color) {
    images::Bitmap result(width, height);
    auto* to = result.rgba().data();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const Pixel pixel = color(y, x);
            to = std::ranges::copy(pixel, to).out;
        }
    return result;
}

TEST(FingerprintCanvas, EvenPhotosStayEvenAtEverySize) {
    struct Case {
        Pixel pixel;
        std::array<int, 3> expected;
    };
    for (const auto& [pixel, expected] :
         {Case{{10, 128, 255, 255}, {10, 128, 255}},
          Case{{10, 20, 30, 0}, {255, 255, 255}},     // what is hidden does not show
          Case{{0, 255, 102, 128}, {127, 255, 178}}}) // half over white
        for (const auto& [width, height] : {std::pair{1, 1}, {256, 1}, {7, 256}, {31, 33}, {256, 171}}) {
            const auto canvas = drawCanvas(bitmap(width, height, [&](int, int) { return pixel; }));
            for (int i = 0; i < canvasSide * canvasSide; ++i)
                for (int channel = 0; channel < 3; ++channel)
                    ASSERT_EQ(canvas.rgb[3 * i + channel], expected[channel]) << width << " × " << height;
        }
}

TEST(FingerprintCanvas, KeepsSlowChangesAndDropsFastOnes) {
    // A ramp keeps its slope away from the edges; stripes of one pixel, far finer than the canvas, become
    // grey.
    const auto canvas = drawCanvas(bitmap(256, 256, [](int y, int x) {
        return Pixel{static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y % 2 ? 255 : 0), 0, 255};
    }));
    for (int y = 4; y < 28; ++y)
        for (int x = 4; x < 28; ++x) {
            EXPECT_NEAR(canvas.value(y, x, 0), 8 * x + 3.5, 1.0);
            EXPECT_NEAR(canvas.value(y, x, 1), 127.5, 2.0);
        }
}

} // namespace
} // namespace lumisort::similarity
