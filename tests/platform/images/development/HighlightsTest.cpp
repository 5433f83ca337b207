#include "platform/images/Decoder.h"
#include "support/DngFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>

namespace lumisort::images {
namespace {

using test::Light;
using test::TestCamera;

constexpr int side = 320;

/// A lamp in the middle whose light falls off smoothly.
Light lamp(const Light& colour, double peak, double x, double y) {
    const double radius = std::hypot(x - side / 2, y - side / 2);
    const double level = peak * std::exp(-radius * radius / (2 * 48.0 * 48.0)) + 0.01;
    return {colour[0] * level, colour[1] * level, colour[2] * level};
}

Light at(const LinearImage& image, int x, int y) {
    return {image.plane(0).at(x, y), image.plane(1).at(x, y), image.plane(2).at(x, y)};
}

double luminance(const Light& light) {
    return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}

/// The chromatic part of light as a point in the plane across grey, over its brightness.
std::array<double, 2> chroma(const Light& light) {
    const double sum = light[0] + light[1] + light[2];
    return {(2 * light[0] - light[1] - light[2]) / sum, std::numbers::sqrt3 * (light[1] - light[2]) / sum};
}

double degreesBetween(const std::array<double, 2>& a, const std::array<double, 2>& b) {
    return std::abs(std::remainder(std::atan2(a[1], a[0]) - std::atan2(b[1], b[0]), 2 * std::numbers::pi)) *
           180 / std::numbers::pi;
}

// A clipped sensor reads too little of what is clipped; with white balance a clipped lamp turns magenta.
TEST(Highlights, KeepTheHueOfTheirRimAndRiseTowardsTheMiddle) {
    // The inverse of the white balance: daylight, tungsten, shade.
    const std::array<Light, 3> whites{{{0.5, 1, 0.65}, {0.95, 1, 0.35}, {0.42, 1, 0.8}}};
    const std::array<Light, 4> lamps{{{1, 1, 1}, {1, 0.85, 0.6}, {1, 0.55, 0.25}, {0.75, 0.9, 1}}};
    std::set<std::set<int>> met; // which channels were saturated in the middle
    for (const auto sensor : {TestCamera::Sensor::bayer, TestCamera::Sensor::linear})
        for (const Light& white : whites)
            for (const Light& colour : lamps)
                for (const double peak : {1.3, 1.9, 2.8, 6.0, 12.0}) {
                    SCOPED_TRACE(testing::Message()
                                 << "white " << white[0] << ' ' << white[2] << ", lamp " << colour[0] << ' '
                                 << colour[1] << ' ' << colour[2] << " · " << peak);
                    const TestCamera camera{.sensor = sensor, .neutral = white};
                    const auto light = [&](int x, int y) { return lamp(colour, peak, x, y); };
                    const auto isClipped = [&](int x, int y) {
                        for (int channel = 0; channel < 3; ++channel)
                            if (camera.response(light(x, y), channel) > 1) return true;
                        return false;
                    };
                    const test::TemporaryFolder folder;
                    const auto photo =
                        decoder().develop(camera.photograph(folder, "a.dng", side, side, light), {});
                    std::set<int> saturated;
                    for (int channel = 0; channel < 3; ++channel)
                        if (camera.response(light(side / 2, side / 2), channel) > 1)
                            saturated.insert(channel);
                    met.insert(saturated);

                    double worstHue = 0, worstFall = 0, worstCast = 0, brightest = 0;
                    for (int x = 8; x <= side / 2; ++x) {
                        const Light here = at(photo.image, x, side / 2);
                        worstFall = std::max(worstFall, 1 - luminance(here) / brightest);
                        brightest = std::max(brightest, luminance(here));
                        if (!isClipped(x, side / 2)) continue;
                        const auto expected = chroma(colour), found = chroma(here);
                        if (colour == Light{1, 1, 1})
                            worstCast = std::max(worstCast, std::hypot(found[0], found[1]));
                        else
                            worstHue = std::max(worstHue, degreesBetween(found, expected));
                    }
                    // Between neighbouring pixels, whose colours are interpolated, the lamps' light changes
                    // by up to 4.6 % (√(2 ln 12) / 48); two thirds of it at the rims.
                    EXPECT_LT(worstHue, 5) << "degrees";
                    EXPECT_LT(worstCast, 0.03) << "of grey";
                    EXPECT_LT(worstFall, 0.03) << "of the luminance";
                }
    EXPECT_TRUE(met.contains({1})) << "green alone";
    EXPECT_TRUE(met.contains({0, 1})) << "red and green";
    EXPECT_TRUE(met.contains({0, 1, 2})) << "all";
}

// A white cloud before a blue sky has no rim that would tell its colour: it stays white rather than blue.
TEST(Highlights, WithoutABrightRimStayWhite) {
    const TestCamera camera{.neutral = {0.5, 1, 0.65}};
    const test::TemporaryFolder folder;
    const auto url = camera.photograph(folder, "a.dng", side, side, [](int x, int) {
        return x < side / 2 ? Light{0.1, 0.2, 0.5} : Light{6, 6, 6};
    });
    const auto photo = decoder().develop(url, {});
    for (int x = side / 2 + 4; x < side - 4; ++x) {
        const auto cast = chroma(at(photo.image, x, side / 2));
        EXPECT_LT(std::hypot(cast[0], cast[1]), 0.02) << x;
        EXPECT_GE(luminance(at(photo.image, x, side / 2)), 0.99) << x;
    }
}

} // namespace
} // namespace lumisort::images
