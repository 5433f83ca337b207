#include "film/optics/CharacteristicCurve.h"
#include "film/optics/MaterialCurveError.h"
#include "film/optics/SampledSpectrum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <random>

namespace lumisort::film {
namespace {

using enum MaterialCurveError;
using Points = std::vector<MaterialPoint>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

template <class Make>
std::optional<MaterialCurveError> refusal(const Make& make) {
    try {
        make();
        return std::nullopt;
    } catch (const MaterialCurveFailure& failure) {
        return failure.error();
    }
}

TEST(MaterialCurves, RefuseBadPointsForTheFirstReason) {
    const struct {
        Points points;
        std::optional<MaterialCurveError> spectrum;
        std::optional<MaterialCurveError> curve;
    } cases[] = {
        {{}, tooFewPoints, tooFewPoints},
        {{{1, nan}}, tooFewPoints, tooFewPoints},
        {{{1, 0}, {2, nan}, {0, -1}}, nonfinite, nonfinite},
        {{{1, 0}, {infinity, 1}}, nonfinite, nonfinite},
        {{{2, 1}, {1, -1}}, negativeSpectrum, unordered},
        {{{1, 1}, {1, 1}}, unordered, unordered},
        {{{1, 2}, {2, 1}, {2, 3}}, unordered, decreasing},
        {{{1, 2}, {2, 1}}, std::nullopt, decreasing},
        {{{1, -2}, {2, -2}}, negativeSpectrum, std::nullopt},
    };
    for (const auto& [points, spectrum, curve] : cases) {
        SCOPED_TRACE(points.size());
        EXPECT_EQ(refusal([&] { SampledSpectrum(points, SampledSpectrum::Outside::zero); }), spectrum);
        EXPECT_EQ(refusal([&] { MonotoneCurve{points}; }), curve);
    }
}

TEST(SampledSpectrum, IsStraightBetweenItsPointsAndObeysItsRuleOutside) {
    const Points points{{400, 2}, {420, 4}, {500, 0}};
    const SampledSpectrum zero(points, SampledSpectrum::Outside::zero);
    const SampledSpectrum hold(points, SampledSpectrum::Outside::holdEndpoint);
    for (const auto& [wavelength, ifZero, ifHeld] : {std::tuple{399.0, 0.0, 2.0},
                                                     {400.0, 2.0, 2.0},
                                                     {405.0, 2.5, 2.5},
                                                     {420.0, 4.0, 4.0},
                                                     {440.0, 3.0, 3.0},
                                                     {500.0, 0.0, 0.0},
                                                     {501.0, 0.0, 0.0},
                                                     {-infinity, 0.0, 2.0},
                                                     {nan, 0.0, 0.0}}) {
        EXPECT_EQ(zero.value(wavelength), ifZero) << wavelength;
        EXPECT_EQ(hold.value(wavelength), ifHeld) << wavelength;
    }
}

TEST(MonotoneCurve, OfTwoPointsIsALine) {
    const MonotoneCurve line({{0, 1}, {2, 5}});
    EXPECT_EQ(line.tangents(), (std::vector<double>{2, 2}));
    for (double x = 0; x <= 2; x += 0.125) EXPECT_DOUBLE_EQ(line.density(x), 1 + 2 * x);
    EXPECT_EQ(line.density(nan), 1);
    EXPECT_EQ(line.logExposure(nan), 0);
}

TEST(MonotoneCurve, ReproducesTangentsWorkedOutByHand) {
    // Slopes 1, 4, 0, 1 over segments 1, 2, 1, 1: harmonic mean (5 + 4) / (5/1 + 4/4) = 1.5 at the second
    // point, flat beside the flat segment, ends (3·1 - 4) / 3 < 0 and (3·1 - 0) / 2 = 1.5.
    const MonotoneCurve curve({{0, 0}, {1, 1}, {3, 9}, {4, 9}, {5, 10}});
    EXPECT_EQ(curve.tangents(), (std::vector<double>{0, 1.5, 0, 0, 1.5}));
    EXPECT_DOUBLE_EQ(curve.density(0.5), 0.5 - 1.5 / 8);
    EXPECT_EQ(curve.density(3.5), 9);
    EXPECT_EQ(curve.logExposure(9), 3);
}

// Laws that hold for any curve: it passes through its points, stays between the ends of each segment,
// never decreases, and `logExposure` finds an x with the wanted value.
TEST(MonotoneCurve, NeverOvershootsAndIsUndoneByItsInverse) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> step(0.01, 3);
    for (int round = 0; round < 200; ++round) {
        Points points{{step(random) - 5, step(random)}};
        while (points.size() < 2 + random() % 9) {
            const bool flat = random() % 4 == 0;
            points.push_back({points.back().x + step(random), points.back().y + (flat ? 0 : step(random))});
        }
        const MonotoneCurve curve(points);
        double previous = points.front().y;
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
            const auto& [x0, y0] = points[i];
            const auto& [x1, y1] = points[i + 1];
            EXPECT_EQ(curve.density(x0), y0);
            for (int k = 0; k <= 40; ++k) {
                const double v = curve.density(std::min(x0 + (x1 - x0) * k / 40, x1));
                EXPECT_GE(v, y0);
                EXPECT_LE(v, y1);
                EXPECT_GE(v, previous - 1e-14);
                previous = v;
                EXPECT_NEAR(curve.density(curve.logExposure(v)), v, 1e-13);
            }
            if (y0 != y1) {
                EXPECT_EQ(curve.logExposure(y1), x1);
            }
        }
        EXPECT_EQ(curve.density(-infinity), points.front().y);
        EXPECT_EQ(curve.density(infinity), points.back().y);
        EXPECT_EQ(curve.logExposure(points.front().y), points.front().x);
        EXPECT_EQ(curve.logExposure(points.back().y + 1), points.back().x);
    }
}

TEST(CharacteristicCurve, DevelopsAlikeHoweverItIsWritten) {
    const SigmoidCurve sigmoid{0.04, 2.7, 1.15};
    const CharacteristicCurve curves[] = {sigmoid, MonotoneCurve({{-3.4, 0.22}, {-1.5, 0.86}, {0.5, 1.98}})};
    const double lowest[] = {0.04, 0.22}, range[] = {2.7, 1.76};
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(lowestDensity(curves[i]), lowest[i]);
        EXPECT_DOUBLE_EQ(densityRange(curves[i]), range[i]);
        for (double x = -3; x <= 0.5; x += 0.25) {
            EXPECT_NEAR(logExposure(curves[i], density(curves[i], x)), x, 1e-13);
        }
    }
    EXPECT_DOUBLE_EQ(sigmoid.density(0), 0.04 + 2.7 / 2);
    EXPECT_EQ(sigmoid.density(-infinity), 0.04);
    EXPECT_EQ(sigmoid.logExposure(0.04), -infinity);
    EXPECT_TRUE(std::isnan(sigmoid.logExposure(0.03)));
}

} // namespace
} // namespace lumisort::film
