#include "platform/images/PicturePyramid.h"

#include "platform/tasks/Cancellation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace lumisort::images {
namespace {

Bitmap noise(int width, int height, bool opaque) {
    Bitmap picture(width, height);
    std::minstd_rand random(7);
    for (auto& sample : picture.rgba()) sample = static_cast<std::uint8_t>(random() % 256);
    for (std::size_t at = 3; opaque && at < picture.rgba().size(); at += 4) picture.rgba()[at] = 255;
    return picture;
}

double sample(const Bitmap& picture, int x, int y, int channel) {
    return picture.rgba()[static_cast<std::size_t>(4 * (y * picture.width() + x) + channel)];
}

/// The mean of what a pixel of level `k` stands for, from level 0 in one step.
double literal(const Bitmap& full, int k, int x, int y, int channel) {
    const int side = 1 << k;
    double sum = 0;
    int count = 0;
    for (int row = y * side; row < std::min((y + 1) * side, full.height()); ++row)
        for (int column = x * side; column < std::min((x + 1) * side, full.width()); ++column, ++count)
            sum += sample(full, column, row, channel);
    return sum / count;
}

TEST(PicturePyramid, LevelsAreMeansOfTheFullPictureAlsoAtOddEdges) {
    struct Size {
        int width, height;
    };
    for (const auto& [width, height] : {Size{1025, 3}, Size{514, 1031}, Size{1200, 1}, Size{512, 512}}) {
        const PicturePyramid pyramid(noise(width, height, true));
        const auto& levels = pyramid.levels();
        EXPECT_LE(std::max(levels.back().width(), levels.back().height()), PicturePyramid::smallestSide);
        EXPECT_TRUE(pyramid.isOpaque());
        for (std::size_t k = 1; k < levels.size(); ++k) {
            const int side = 1 << k;
            ASSERT_EQ(levels[k].width(), (width + side - 1) / side);
            ASSERT_EQ(levels[k].height(), (height + side - 1) / side);
        }
        if (levels.size() == 1) continue;
        for (int y = 0; y < levels[1].height(); ++y)
            for (int x = 0; x < levels[1].width(); ++x)
                ASSERT_NEAR(sample(levels[1], x, y, 1), literal(levels[0], 1, x, y, 1), 0.51)
                    << x << ' ' << y;
    }
}

TEST(PicturePyramid, MultipliesColoursByTheirAlpha) {
    const Bitmap straight = noise(3, 2, false);
    const PicturePyramid pyramid(straight.clone());
    EXPECT_FALSE(pyramid.isOpaque());
    for (int x = 0; x < 3; ++x)
        EXPECT_EQ(sample(pyramid.levels()[0], x, 1, 0),
                  std::round(sample(straight, x, 1, 0) * sample(straight, x, 1, 3) / 255));
}

TEST(PicturePyramid, ChoosesTheSmallestLevelThatIsSharp) {
    const PicturePyramid pyramid(noise(4096, 8, true)); // levels of 4096, 2048, 1024, 512
    struct Case {
        double scale;
        std::size_t level;
    };
    for (const auto& [scale, level] : {Case{8, 0}, Case{1, 0}, Case{0.51, 0}, Case{0.5, 1}, Case{1.0 / 3, 1},
                                       Case{0.25, 2}, Case{0.1249, 3}, Case{0.001, 3}})
        EXPECT_EQ(pyramid.levelFor(scale), level) << scale;
}

TEST(PicturePyramid, StopsWhenAsked) {
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(PicturePyramid(noise(600, 2, true), stop.get_token()), tasks::Cancelled);
}

} // namespace
} // namespace lumisort::images
