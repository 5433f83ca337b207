#include "similarity/featureprint/AreaFilter.h"

#include "Reference.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace lumisort;
using namespace lumisort::similarity;

namespace {

struct Case {
    int width, height, targetWidth, targetHeight;
    bool transparent = false;
};

// Whole and broken factors, wider, narrower, enlarged each way, and one pixel.
constexpr Case cases[] = {{224, 224, 224, 224}, {448, 672, 224, 224}, {1024, 683, 224, 224},
                          {225, 223, 224, 224}, {1025, 7, 32, 32},    {3, 500, 32, 32},
                          {5, 3, 32, 32},       {1, 1, 7, 9},         {301, 200, 64, 64, true}};

} // namespace

TEST(AreaFilter, AveragesLikeTheIntegralOfThePicture) {
    test::forEachTarget([](const char* target) {
        AreaFilter filter; // one for all cases, so that what one leaves behind could disturb the next
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(target) + " " + std::to_string(c.width) + " × " +
                         std::to_string(c.height));
            const images::Bitmap source = test::picture(c.width, c.height, 5, c.transparent);
            const std::vector<double> expected = reference::areaMeans(source, c.targetWidth, c.targetHeight);
            std::vector<float> result(expected.size());
            filter.shrink(source, c.targetWidth, c.targetHeight, result);
            double worst = 0;
            for (std::size_t i = 0; i < result.size(); ++i)
                worst = std::max(worst, std::abs(result[i] - expected[i]));
            // Row sums are exact; some ten roundings of sums up to 255 follow, half of 2^-23 · 255 each.
            // Laying over white rounds each pixel to 8 bits, by at most a half.
            EXPECT_LE(worst, c.transparent ? 0.501 : 10 * 255 * 0x1p-24);
        }
    });
}
