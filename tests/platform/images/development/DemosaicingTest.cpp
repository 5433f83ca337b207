#include "platform/images/development/BayerDevelopment.h"
#include "platform/tasks/Cancellation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <vector>

namespace lumisort::images {
namespace {

/// A mosaic and the samples that it views.
struct Noise {
    Noise(int width, int height, std::array<int, 4> colours)
        : samples(static_cast<std::size_t>(width * height)) {
        std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same each time
        for (auto& sample : samples) sample = static_cast<std::uint16_t>(200 + random() % 3000);
        mosaic.samples = {samples.data(), width, height, width};
        mosaic.colours = colours;
        mosaic.black = {256};
        mosaic.scale = {2.0F / 4096, 1.0F / 4096, 1.5F / 4096};
    }
    std::vector<std::uint16_t> samples;
    Mosaic mosaic;
};

/// Ratio-corrected demosaicing, one pixel after the other, in double precision and as its description has it.
class Literal {
public:
    explicit Literal(const Mosaic& mosaic) : mosaic_(mosaic) {}

    std::array<double, 3> at(int x, int y) const {
        return {redOrBlue(0, x, y), green(x, y), redOrBlue(2, x, y)};
    }

private:
    int colour(int x, int y) const { return mosaic_.colourAt(x & 1, y & 1); }
    double s(int x, int y) const {
        return mosaic_.valueAt(reflect(x, mosaic_.samples.width), reflect(y, mosaic_.samples.height));
    }
    double detail(int x, int y, int dx, int dy) const {
        const auto k = [&](int n) { return s(x + n * dx, y + n * dy); };
        const double sum = 4 * k(0) - k(1) - k(-1) - 2 * (k(2) + k(-2)) + k(3) + k(-3);
        return sum * sum;
    }
    static double share(double a, double b) { return (a + 1e-10) / (a + b + 2e-10); }
    double localDirection(int x, int y) const {
        double vertical = 0, horizontal = 0;
        for (int n = -1; n <= 1; ++n)
            vertical += detail(x, y + n, 0, 1), horizontal += detail(x + n, y, 1, 0);
        return share(vertical, horizontal);
    }
    double localDiagonal(int x, int y) const {
        const auto energy = [&](int dx) {
            double sum = 0;
            for (int n = -1; n <= 1; ++n) {
                const int cx = x + n * dx, cy = y + n;
                const double d = s(cx + 2 * dx, cy + 2) - 2 * s(cx, cy) + s(cx - 2 * dx, cy - 2);
                sum += d * d;
            }
            return sum;
        };
        return share(energy(1), energy(-1));
    }
    template <class Direction>
    static double surer(Direction direction, int x, int y) {
        const double own = direction(x, y);
        const double around = (direction(x - 1, y - 1) + direction(x + 1, y - 1) + direction(x - 1, y + 1) +
                               direction(x + 1, y + 1)) /
                              4;
        return std::abs(own - 0.5) < std::abs(around - 0.5) ? around : own;
    }
    double direction(int x, int y) const {
        return surer([this](int a, int b) { return localDirection(a, b); }, x, y);
    }
    double lowPass(int x, int y) const {
        double sum = 0;
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx)
                sum += (2 - std::abs(dx)) * (2 - std::abs(dy)) * s(x + dx, y + dy);
        return std::max(sum / 16, 0.0);
    }
    struct Estimate {
        double value, variation;
    };
    static double weighed(const Estimate& a, const Estimate& b) {
        return (b.variation * a.value + a.variation * b.value) / (a.variation + b.variation);
    }
    double green(int x, int y) const {
        if (colour(x, y) == 1) return s(x, y);
        const auto towards = [&](int dx, int dy) -> Estimate {
            const auto k = [&](int n) { return s(x + n * dx, y + n * dy); };
            const double here = lowPass(x, y) + 1.0 / 512,
                         there = lowPass(x + 2 * dx, y + 2 * dy) + 1.0 / 512;
            return {k(1) * 2 * here / (here + there), 1e-5 + std::abs(k(1) - k(-1)) + std::abs(k(0) - k(2)) +
                                                          std::abs(k(1) - k(3)) + std::abs(k(2) - k(4))};
        };
        const double vertical = weighed(towards(0, -1), towards(0, 1));
        const double horizontal = weighed(towards(-1, 0), towards(1, 0));
        return std::lerp(vertical, horizontal, direction(x, y));
    }
    static double pedestal(double value) { return value + 0.125; }
    /// Interpolates the ratio of `channel` to green between four neighbours that have the channel.
    double redOrBlue(int channel, int x, int y) const {
        const int here = colour(x, y);
        if (here == channel) return s(x, y);
        const bool diagonal = here != 1;
        const auto value = [&](int ax, int ay) { return diagonal ? s(ax, ay) : redOrBlue(channel, ax, ay); };
        const auto towards = [&](int dx, int dy) -> Estimate {
            const auto k = [&](int n) { return value(x + n * dx, y + n * dy); };
            return {pedestal(k(1)) / pedestal(std::max(green(x + dx, y + dy), 0.0)),
                    1e-5 + std::abs(k(1) - k(-1)) + std::abs(k(1) - k(3)) +
                        std::abs(green(x, y) - green(x + 2 * dx, y + 2 * dy))};
        };
        const double first =
            diagonal ? weighed(towards(-1, -1), towards(1, 1)) : weighed(towards(0, -1), towards(0, 1));
        const double second =
            diagonal ? weighed(towards(1, -1), towards(-1, 1)) : weighed(towards(-1, 0), towards(1, 0));
        const double share =
            diagonal ? surer([this](int a, int b) { return localDiagonal(a, b); }, x, y) : direction(x, y);
        return std::lerp(first, second, share) * pedestal(std::max(green(x, y), 0.0)) - 0.125;
    }

    const Mosaic& mosaic_;
};

TEST(RatioCorrectedDemosaicing, EqualsTheLiteralOneForEachPatternUpToTheBorders) {
    for (const auto& colours : {std::array{0, 1, 1, 2}, {1, 0, 2, 1}, {2, 1, 1, 0}, {1, 2, 0, 1}}) {
        // Odd, and more rows than one strip has.
        const Noise noise(21, 141, colours);
        const auto image = demosaicBayer(noise.mosaic, {}, {}, {});
        const Literal literal(noise.mosaic);
        int differing = 0;
        for (int y = 0; y < image.height(); ++y) {
            if (y > 20 && y < 110) continue; // The literal one takes its time.
            for (int x = 0; x < image.width(); ++x) {
                const auto expected = literal.at(x, y);
                for (int channel = 0; channel < 3; ++channel)
                    // 24-bit significands through some twenty operations on values up to 2.
                    differing += std::abs(image.plane(channel).at(x, y) -
                                          expected[static_cast<std::size_t>(channel)]) > 1e-4;
            }
        }
        // Where two directions are as sure as each other, rounding decides.
        EXPECT_LE(differing, 6) << colours[0] << colours[1];
    }
}

TEST(RatioCorrectedDemosaicing, StopsWhenAsked) {
    const Noise noise(64, 600, {0, 1, 1, 2});
    std::stop_source source;
    source.request_stop();
    EXPECT_THROW(demosaicBayer(noise.mosaic, {}, {}, source.get_token()), tasks::Cancelled);
}

} // namespace
} // namespace lumisort::images
