#include "similarity/visual/PrintMatching.h"

#include "platform/tasks/Cancellation.h"
#include "similarity/visual/PrintSketch.h"
#include "similarity/visual/VisualScanError.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace lumisort::similarity {
namespace {

using Prints = std::vector<std::shared_ptr<const FeaturePrint>>;

std::shared_ptr<const FeaturePrint> normalised(FeaturePrint print) {
    double sum = 0;
    for (const float value : print.values) sum += static_cast<double>(value) * static_cast<double>(value);
    for (float& value : print.values) value = static_cast<float>(value / std::sqrt(sum));
    return std::make_shared<const FeaturePrint>(print);
}

/// Shots of scenes in random order: scenes differ along few directions and shots a little along all.
Prints scenes(int count, unsigned seed, int dimensions, double spread) {
    std::mt19937 random(seed);
    std::normal_distribution<double> gauss;
    std::vector<FeaturePrint> centres(static_cast<std::size_t>(count / 3 + 1));
    for (auto& centre : centres)
        for (int i = 0; i < dimensions; ++i)
            centre.values[static_cast<std::size_t>(i * 5 % 384)] = static_cast<float>(gauss(random));
    Prints prints;
    for (int i = 0; i < count; ++i) {
        FeaturePrint shot = centres[random() % centres.size()];
        const double amount = spread * std::sqrt(dimensions / 384.0) * static_cast<double>(random() % 4);
        for (float& value : shot.values) value += static_cast<float>(amount * gauss(random));
        prints.push_back(normalised(shot));
    }
    return prints;
}

/// Prints with four values of ±½ among the first `places`: distances are exactly √½, 1, √1½ … and tie.
Prints lattice(int count, unsigned seed, unsigned places) {
    std::mt19937 random(seed);
    Prints prints;
    while (std::ssize(prints) < count) {
        FeaturePrint print;
        for (int filled = 0; filled < 4;) {
            float& value = print.values[random() % places * 5];
            if (value == 0) {
                value = random() % 8 == 0 ? -0.5F : 0.5F;
                ++filled;
            }
        }
        prints.push_back(std::make_shared<const FeaturePrint>(print));
    }
    return prints;
}

std::vector<AnchorMatch> literally(const Prints& prints, float radius) {
    return AnchorGrouping::matches(
        static_cast<int>(prints.size()), radius, 4,
        [&](int i, int j) {
            return checkedDistance(*prints[static_cast<std::size_t>(i)],
                                   *prints[static_cast<std::size_t>(j)]);
        },
        [](int) {}, {});
}

struct MatchingCase {
    const char* name;
    Prints prints;
};

TEST(PrintMatching, GivesTheMatchesOfTheGeneralForm) {
    Prints nearlyLongEnough = scenes(600, 9, 60, 0.25);
    for (auto& print : nearlyLongEnough) { // as far from length 1 as is let through
        FeaturePrint longer = *print;
        for (float& value : longer.values) value *= 1 + 0.4F * PrintSketches::unitTolerance;
        print = std::make_shared<const FeaturePrint>(longer);
    }
    const MatchingCase cases[] = {
        {"nothing", {}},
        {"few prints", scenes(100, 3, 50, 0.2)},
        {"scenes in few dimensions", scenes(513, 4, 30, 0.3)},
        {"scenes in all dimensions", scenes(700, 5, 384, 0.3)},
        {"ties in few dimensions", lattice(700, 6, 9)},
        {"ties in more dimensions than a sketch has", lattice(800, 7, 76)},
        {"copies of one print", Prints(520, scenes(1, 1, 40, 0)[0])},
        {"lengths at the tolerance", nearlyLongEnough},
    };
    const float tie = std::sqrt(0.5F);
    for (const auto& [name, prints] : cases) {
        for (const float radius : {0.0F, tie, std::nextafter(tie, 0.0F), 0.855F, 1.5F}) {
            const int width = radius < 0.8F ? 4 : 1;
            EXPECT_EQ(matchPrints(prints, radius, width, [](int) {}, {}), literally(prints, radius))
                << name << ", radius " << radius;
        }
    }
}

TEST(PrintMatching, ComputesFewOfTheDistances) {
    const Prints prints = scenes(3000, 10, 40, 0.2);
    std::int64_t distances = 0;
    matchPrints(prints, 0.75F, 2, [](int) {}, {}, &distances);
    EXPECT_LT(distances, 3000 * 2999 / 2 / 50);
}

TEST(PrintMatching, PrintsOfAnotherLengthGoTheGeneralWay) {
    Prints prints = scenes(200, 11, 40, 0.2);
    FeaturePrint longer = *prints[7];
    for (float& value : longer.values) value *= 1.5F;
    prints[7] = std::make_shared<const FeaturePrint>(longer);
    EXPECT_EQ(matchPrints(prints, 0.75F, 2, [](int) {}, {}), literally(prints, 0.75F));
}

TEST(PrintMatching, ADistanceThatIsNoNumberFailsTheRun) {
    for (const float bad :
         {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        for (const std::size_t place : {0U, 7U, 149U}) {
            Prints prints = scenes(150, 12, 40, 0.2);
            FeaturePrint broken = *prints[place];
            broken.values[100] = bad;
            prints[place] = std::make_shared<const FeaturePrint>(broken);
            try {
                matchPrints(prints, 0.75F, 2, [](int) {}, {});
                ADD_FAILURE() << "matched print " << place << " holding " << bad;
            } catch (const VisualScanError& error) {
                EXPECT_EQ(error.failure(), VisualScanFailure::corruptFile);
            }
        }
    }
}

TEST(PrintMatching, StopsWhereAskedTo) {
    const Prints prints = scenes(2000, 13, 384, 0.3);
    std::stop_source source;
    int done = 0;
    const auto progress = [&](int items) {
        done = items;
        if (items == 700) source.request_stop();
    };
    EXPECT_THROW(matchPrints(prints, 0.75F, 4, progress, source.get_token()), tasks::Cancelled);
    EXPECT_LE(done, 701);
    EXPECT_THROW(matchPrints(prints, 0.75F, 4, progress, source.get_token()), tasks::Cancelled);
    EXPECT_LE(done, 701);
}

} // namespace
} // namespace lumisort::similarity
