#include "platform/images/Decoder.h"
#include "support/DngFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <ostream>

namespace lumisort::images {
namespace {

using test::Light;
using test::TestCamera;
using Sensor = TestCamera::Sensor;

/// A camera whose primaries see much of each other's light, so that saturated colours lie outside of sRGB's.
TestCamera camera(Sensor sensor) {
    return {.sensor = sensor,
            .neutral = {0.5, 1, 0.65},
            .primaries = {{{0.7, 0.25, 0.05}, {0.1, 0.8, 0.1}, {0.05, 0.25, 0.7}}}};
}

// LibRaw develops X-Trans from 512 pixels a side on.
constexpr int width = 576, height = 520;

/// A smooth scene: grey to the left, colours to the right, among them one with a negative component and light
/// of more than 1 in red and blue; no channel saturated.
Light scene(int x, int y) {
    const double across = x / double(width), down = y / double(height);
    const double grey = 0.05 + 0.6 * down;
    const double wave = 0.5 + 0.5 * std::sin(2 * std::numbers::pi * down);
    return {grey + across * (1.1 - grey) * wave, grey + across * (-0.05 - grey) * wave + across * 0.2,
            grey + across * (1.0 - grey) * (1 - wave)};
}

/// Largest difference between a developed photo and what it was taken of, without the border.
double largestError(const LinearImage& image, const std::function<Light(int, int)>& expected) {
    double largest = 0;
    for (int channel = 0; channel < 3; ++channel)
        for (int y = 4; y < image.height() - 4; ++y)
            for (int x = 4; x < image.width() - 4; ++x)
                largest = std::max(largest, std::abs(image.plane(channel).at(x, y) -
                                                     expected(x, y)[static_cast<std::size_t>(channel)]));
    return largest;
}

TEST(NeutralDevelopment, ReturnsTheLightOfTheSceneForEachKindOfSensor) {
    struct Case {
        const char* name;
        TestCamera camera;
        double tolerance;
    };
    auto grbg = camera(Sensor::bayer), bggr = grbg, gbrg = grbg;
    grbg.bayerPattern = {1, 0, 2, 1};
    bggr.bayerPattern = {2, 1, 1, 0};
    gbrg.bayerPattern = {1, 2, 0, 1};
    // Ours is exact for colours that change slowly; LibRaw's others are so to about a percent, and integers.
    for (const auto& [name, camera, tolerance] :
         {Case{"bayer", camera(Sensor::bayer), 0.004}, Case{"grbg", grbg, 0.004}, Case{"bggr", bggr, 0.004},
          Case{"gbrg", gbrg, 0.004}, Case{"x-trans", camera(Sensor::xTrans), 0.03},
          Case{"linear", camera(Sensor::linear), 0.0005}}) {
        SCOPED_TRACE(name);
        const test::TemporaryFolder folder;
        const auto photo = decoder().develop(camera.photograph(folder, "a.dng", width, height, scene), {});
        ASSERT_EQ(photo.image.width(), width);
        ASSERT_EQ(photo.image.height(), height);
        EXPECT_LT(largestError(photo.image, scene), tolerance);
    }
}

TEST(NeutralDevelopment, OfFourColoursKeepsGreysAndOfOneReadsLightness) {
    const test::TemporaryFolder folder;
    const auto grey = [](int x, int y) {
        const double level = 0.1 + 0.0008 * x + 0.0005 * y;
        return Light{level, level, level};
    };
    for (const Sensor sensor : {Sensor::fourColour, Sensor::monochrome}) {
        TestCamera camera{.sensor = sensor};
        const auto photo = decoder().develop(camera.photograph(folder, "a.dng", width, height, grey), {});
        EXPECT_LT(largestError(photo.image, grey), 0.006) << static_cast<int>(sensor);
    }
    TestCamera four{.sensor = Sensor::fourColour};
    const auto red = [](int, int) { return Light{0.6, 0.2, 0.1}; };
    EXPECT_LT(
        largestError(decoder().develop(four.photograph(folder, "a.dng", width, height, red), {}).image, red),
        0.02);
}

TEST(NeutralDevelopment, TurnsThePhotoUpright) {
    struct Case {
        int orientation;
        bool exchange;
        int x, y; ///< where the stored (20, 10) goes
    };
    for (const auto sensor : {Sensor::bayer, Sensor::linear})
        for (const auto& [orientation, exchange, x, y] :
             {Case{1, false, 20, 10}, Case{2, false, width - 21, 10}, Case{3, false, width - 21, height - 11},
              Case{4, false, 20, height - 11}, Case{5, true, 10, 20}, Case{6, true, height - 11, 20},
              Case{7, true, height - 11, width - 21}, Case{8, true, 10, width - 21}}) {
            auto turned = camera(sensor);
            turned.orientation = orientation;
            const test::TemporaryFolder folder;
            const auto photo =
                decoder().develop(turned.photograph(folder, "a.dng", width, height, scene), {});
            EXPECT_EQ(photo.fullWidth, exchange ? height : width);
            EXPECT_EQ(photo.image.width(), photo.fullWidth);
            EXPECT_EQ(photo.image.height(), photo.fullHeight);
            for (int channel = 0; channel < 3; ++channel)
                EXPECT_NEAR(photo.image.plane(channel).at(x, y),
                            scene(20, 10)[static_cast<std::size_t>(channel)], 0.005)
                    << "orientation " << orientation;
        }
}

TEST(NeutralDevelopment, TakesHalfTheSizeWhereThatIsEnoughAndTheSensorAllowsIt) {
    struct Case {
        Sensor sensor;
        int longestSide, factor;
    };
    constexpr int oddWidth = width + 1, oddHeight = height + 1;
    for (const auto& [sensor, longestSide, factor] :
         {Case{Sensor::bayer, oddWidth / 2, 2}, Case{Sensor::bayer, oddWidth / 2 + 1, 1},
          Case{Sensor::bayer, 0, 1}, Case{Sensor::xTrans, 20, 1}, Case{Sensor::linear, 20, 1}}) {
        SCOPED_TRACE(static_cast<int>(sensor));
        const test::TemporaryFolder folder;
        const auto url = camera(sensor).photograph(folder, "a.dng", oddWidth, oddHeight, scene);
        const auto photo = decoder().develop(url, {.longestSide = longestSide});
        EXPECT_EQ(photo.image.width(), (oddWidth + factor - 1) / factor);
        EXPECT_EQ(photo.image.height(), (oddHeight + factor - 1) / factor);
        EXPECT_EQ(photo.fullWidth, oddWidth);
        EXPECT_EQ(photo.fullHeight, oddHeight);
        const auto shrunk = [factor](int x, int y) { return scene(x * factor, y * factor); };
        EXPECT_LT(largestError(photo.image, shrunk), 0.02);
    }
}

} // namespace
} // namespace lumisort::images
