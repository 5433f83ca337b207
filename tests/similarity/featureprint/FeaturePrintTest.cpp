#include "similarity/featureprint/FeaturePrint.h"

#include "Reference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using namespace lumisort;
using namespace lumisort::similarity;

namespace {

FeaturePrint randomPrint(std::mt19937& random) {
    FeaturePrint print;
    std::normal_distribution<double> normal;
    double squares = 0;
    for (float& value : print.values) {
        value = static_cast<float>(normal(random));
        squares += std::pow(value, 2);
    }
    for (float& value : print.values) value /= static_cast<float>(std::sqrt(squares));
    return print;
}

} // namespace

TEST(FeaturePrint, DistanceIsEuclidean) {
    test::forEachTarget([](const char* target) {
        SCOPED_TRACE(target);
        std::mt19937 random(3);
        for (int i = 0; i < 100; ++i) {
            const FeaturePrint a = randomPrint(random);
            FeaturePrint b = randomPrint(random);
            // From far apart to nearly equal.
            for (std::size_t k = 0; k < featurePrintLength; ++k)
                b.values[k] =
                    a.values[k] + (b.values[k] - a.values[k]) * static_cast<float>(std::pow(0.9, i));
            double squares = 0;
            for (std::size_t k = 0; k < featurePrintLength; ++k)
                squares += std::pow(static_cast<double>(a.values[k]) - b.values[k], 2);
            const double expected = std::sqrt(squares);
            // A lane adds up to 384 squares (where a vector has one) and rounds each time; the root halves
            // that.
            EXPECT_NEAR(distance(a, b), expected, expected * 100 * 0x1p-24);
            EXPECT_EQ(distance(a, b), distance(b, a));
            EXPECT_EQ(distance(a, a), 0.0F);
        }
    });
}

TEST(FeaturePrint, DistanceShowsWhatIsNoNumber) {
    std::mt19937 random(4);
    const FeaturePrint a = randomPrint(random);
    for (const std::size_t place : {std::size_t{0}, featurePrintLength / 2 + 1, featurePrintLength - 1}) {
        FeaturePrint b = a;
        b.values[place] = std::numeric_limits<float>::quiet_NaN();
        EXPECT_TRUE(std::isnan(distance(a, b))) << place;
    }
}
