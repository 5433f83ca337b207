#include "similarity/Fingerprinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <random>

namespace lumisort::similarity {
namespace {

FingerprintCanvas noiseCanvas(unsigned seed) {
    std::mt19937 random(seed);
    FingerprintCanvas canvas;
    for (auto& value : canvas.rgb) value = static_cast<std::uint8_t>(random());
    return canvas;
}

FingerprintCanvas transformed(const FingerprintCanvas& canvas, Orientation orientation) {
    FingerprintCanvas result;
    for (int y = 0; y < canvasSide; ++y)
        for (int x = 0; x < canvasSide; ++x)
            for (int channel = 0; channel < 3; ++channel) {
                const auto source = sourceCell(orientation, {y, x}, canvasSide);
                result.rgb[3 * (y * canvasSide + x) + channel] = canvas.value(source.y, source.x, channel);
            }
    return result;
}

/// The hash by the definition of the two-dimensional cosine transform, one sum over all pixels per
/// coefficient.
std::uint64_t literalHash(const FingerprintCanvas& canvas) {
    std::vector<double> coefficients;
    for (int v = 0; v < 8; ++v)
        for (int u = 0; u < 8; ++u) {
            if (u == 0 && v == 0) continue;
            double sum = 0;
            for (int y = 0; y < 32; ++y)
                for (int x = 0; x < 32; ++x)
                    sum += (0.299 * canvas.value(y, x, 0) + 0.587 * canvas.value(y, x, 1) +
                            0.114 * canvas.value(y, x, 2)) /
                           255 * std::cos(std::numbers::pi / 32 * (x + 0.5) * u) *
                           std::cos(std::numbers::pi / 32 * (y + 0.5) * v);
            coefficients.push_back(sum * (u == 0 ? std::sqrt(0.5) : 1) * (v == 0 ? std::sqrt(0.5) : 1));
        }
    auto sorted = coefficients;
    std::ranges::sort(sorted);
    std::uint64_t hash = 0;
    for (std::size_t i = 0; i < coefficients.size(); ++i)
        if (coefficients[i] > sorted[31]) hash += std::uint64_t{1} << i;
    return hash;
}

TEST(Fingerprint, HashesAreThoseOfTheTurnedAndMirroredCanvases) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const auto canvas = noiseCanvas(seed);
        const auto upright = fingerprint(canvas, 1.5);
        ASSERT_EQ(upright.orientationHashes.size(), orientationCount);
        EXPECT_EQ(upright.hash, upright.orientationHashes.front());
        for (std::size_t k = 0; k < orientationCount; ++k) {
            const auto turned = transformed(canvas, hashOrder[k]);
            EXPECT_EQ(upright.orientationHashes[k], literalHash(turned))
                << "seed " << seed << " orientation " << k;
            // 63 different values: 31 lie above their median, and bit 63 stands for none.
            EXPECT_EQ(std::popcount(upright.orientationHashes[k]), 31);
            EXPECT_EQ(upright.orientationHashes[k] >> 63, 0U);
        }
    }
}

TEST(Fingerprint, DescribesColoursCellByCell) {
    FingerprintCanvas canvas;
    canvas.rgb.fill(255);
    for (int y = 4; y < 8; ++y)
        for (int x = 8; x < 12; ++x)
            canvas.rgb[3 * (y * canvasSide + x) + 1] = static_cast<std::uint8_t>(10 * x);
    const auto fingerprint = similarity::fingerprint(canvas, 4.0);
    ASSERT_EQ(fingerprint.colors.size(), colourValueCount);
    for (std::size_t i = 0; i < fingerprint.colors.size(); ++i)
        EXPECT_EQ(fingerprint.colors[i], i == 3 * (8 * 1 + 2) + 1 ? 4 * (80 + 90 + 100 + 110) / 4080.0 : 1.0)
            << i;
    EXPECT_EQ(fingerprint.aspect, 4.0);
}

TEST(Fingerprint, DeviationIsThatOfTheWholePopulation) {
    FingerprintCanvas canvas;
    for (std::size_t i = 0; i < canvas.rgb.size() / 2; ++i) canvas.rgb[i] = 255;
    EXPECT_NEAR(fingerprint(canvas, 1).deviation, 0.5, 1e-12);
    canvas.rgb.fill(77);
    EXPECT_NEAR(fingerprint(canvas, 1).deviation, 0, 1e-12);
    EXPECT_TRUE(fingerprint(canvas, 1).isLowDetail());
}

} // namespace
} // namespace lumisort::similarity
