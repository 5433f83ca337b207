#include "film/optics/FilmOptics.h"

#include "film/optics/LiteralModel.h"
#include "film/optics/ReferenceValues.h"
#include "platform/tasks/Cancellation.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <atomic>
#include <cmath>

namespace lumisort::film {
namespace {

// Values are stored as 32-bit floats, none above 2.
constexpr double stored = 1.2e-7;

constexpr int n = cubeDimension;

Vector3 nodeInput(int r, int g, int b) {
    return Vector3{double(r), double(g), double(b)} / 32;
}

Vector3 nodeValue(const FilmLookupCube& cube, int r, int g, int b) {
    const auto node = cube.node(r, g, b);
    return {node[0], node[1], node[2]};
}

/// Compares every node, layout and alpha included, with a function of its input.
template <class F>
void expectCube(const FilmLookupCube& cube, const F& expected) {
    ASSERT_EQ(cube.dimension(), n);
    ASSERT_EQ(cube.data().size_bytes(), 574992U);
    double worst = 0;
    for (int i = 0; i < n * n * n; ++i) {
        const auto wanted = expected(nodeInput(i % n, i / n % n, i / n / n));
        const auto node = cube.data().subspan(static_cast<std::size_t>(i) * 4, 4);
        for (std::size_t c = 0; c < 3; ++c) worst = std::max(worst, std::abs(node[c] - wanted[c]));
        ASSERT_EQ(node[3], 1);
    }
    EXPECT_LE(worst, stored);
}

TEST(ExposureCube, AgreesWithTheLiteralFitAtEveryNode) {
    const FilmSpectralModel model(FilmStock::portra400, FilmPaper::glossy);
    const ExposureCube exposure = exposureCube(model);
    EXPECT_EQ(exposure.factor, 0.25);
    expectCube(exposure.cube, [&](const Vector3& rgb) {
        return largest(rgb) > 0 ? literal::layerExposure(model, LinearRgb{rgb.v}) * 0.25 : Exposure{};
    });
}

TEST(OpticalCubes, AgreeWithTheLiteralSumsAtEveryNode) {
    const FilmSpectralModel model(FilmStock::portra400, FilmPaper::soft);
    const DensityCube negative = negativeCube(model);
    EXPECT_EQ(negative.scale, 3.2);
    expectCube(negative.cube, [&](const Vector3& rgb) {
        const Transmission seen =
            literal::seenThrough(model.dyes, model.baseDensities, model.paperWeights, rgb * 3.2);
        return Vector3{std::log10(seen[0]), std::log10(seen[1]), std::log10(seen[2])} / -3.2;
    });
    const ReflectionCube paper = paperCube(model);
    EXPECT_EQ(paper.scale, 3.2);
    EXPECT_EQ(paper.minimums, model.reflectionCubeMinimums());
    EXPECT_EQ(paper.ranges, model.reflectionCubeRanges());
    expectCube(paper.cube, [&](const Vector3& rgb) {
        const LinearRgb seen = literal::seenThrough(model.paperDyes, {}, model.reflectionWeights, rgb * 3.2);
        return (seen - paper.minimums) / Vector3{paper.ranges.v};
    });
}

TEST(Cubes, HoldTheReferenceNodesForEveryStock) {
    for (const reference::Stock& expected : reference::stocks) {
        SCOPED_TRACE(storedName(expected.stock));
        const FilmSpectralModel model(expected.stock, FilmPaper::glossy);
        const FilmLookupCube exposure = exposureCube(model).cube;
        const FilmLookupCube negative = negativeCube(model).cube;
        const ReflectionCube print = paperCube(model);
        const FilmLookupCube& paper = print.cube;
        const LinearRgb clear = print.minimums + print.ranges * nodeValue(paper, 0, 0, 0);
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(nodeValue(exposure, 5, 11, 29)[c], expected.exposureNode[c], stored);
            EXPECT_NEAR(nodeValue(exposure, 32, 0, 0)[c], expected.exposureRedCorner[c], stored);
            EXPECT_NEAR(nodeValue(negative, 5, 11, 29)[c], expected.negativeNode[c], stored);
            EXPECT_NEAR(nodeValue(paper, 5, 11, 29)[c], reference::paperNode[c], stored);
            // A white exposes every layer by 1, unexposed paper is white, and a generic base is clear.
            EXPECT_EQ(nodeValue(exposure, 0, 0, 0)[c], 0);
            EXPECT_NEAR(nodeValue(exposure, 32, 32, 32)[c], 0.25, 1e-15);
            EXPECT_NEAR(clear[c], 1, 3 * stored);
            if (!model.stock.isMeasured()) {
                EXPECT_NEAR(nodeValue(negative, 0, 0, 0)[c], 0, 1e-15);
            }
        }
        if (expected.stock == FilmStock::mono400) {
            for (int r = 0; r < n; ++r) {
                const auto node = exposure.node(r, 7, 21);
                EXPECT_TRUE(node[0] == node[1] && node[1] == node[2]);
            }
        }
    }
}

TEST(DensityCurve, SamplesTheLayersFromTheToeToTheShoulder) {
    for (const FilmStock stock : allFilmStocks) {
        const FilmSpectralModel model(stock, FilmPaper::glossy);
        const std::vector<float> texels = densityCurves(model).texels;
        ASSERT_EQ(texels.size() * sizeof(float), 32768U);
        for (const std::size_t i : {0UL, 700UL, 1365UL, 2047UL}) {
            const double exposure = 0.18 * std::pow(10, -6 + 9 * double(i) / 2047);
            const Density density = model.layerDensity(Exposure::filled(exposure)) / 3.2;
            for (std::size_t c = 0; c < 3; ++c) EXPECT_NEAR(texels[4 * i + c], density[c], stored);
        }
        for (std::size_t i = 4; i < texels.size(); ++i) EXPECT_GE(texels[i], texels[i - 4]);
        for (std::size_t i = 3; i < texels.size(); i += 4) EXPECT_EQ(texels[i], 1);
    }
}

TEST(Optics, AreTheSameForAnyNumberOfWorkers) {
    const FilmOptics one = buildOptics(FilmStock::color400, FilmPaper::soft, 1);
    for (const int workers : {2, 7}) {
        const FilmOptics many = buildOptics(FilmStock::color400, FilmPaper::soft, workers);
        EXPECT_EQ(many.exposure.cube, one.exposure.cube);
        EXPECT_EQ(many.negative.cube, one.negative.cube);
        EXPECT_EQ(many.paper.cube, one.paper.cube);
        EXPECT_EQ(many.curves, one.curves);
    }
}

// No instruction set may round differently.
TEST(Optics, AreTheSameOnAnyProcessor) {
    const FilmOptics best = buildOptics(FilmStock::portra400, FilmPaper::glossy);
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().DeInit();
        const FilmOptics other = buildOptics(FilmStock::portra400, FilmPaper::glossy);
        EXPECT_EQ(other.exposure.cube, best.exposure.cube) << hwy::TargetName(target);
        EXPECT_EQ(other.negative.cube, best.negative.cube) << hwy::TargetName(target);
        EXPECT_EQ(other.paper.cube, best.paper.cube) << hwy::TargetName(target);
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().DeInit();
}

TEST(Optics, StopWhenAsked) {
    std::stop_source stop;
    stop.request_stop();
    const FilmSpectralModel model(FilmStock::portra400, FilmPaper::glossy);
    EXPECT_THROW(exposureCube(model, 2, stop.get_token()), tasks::Cancelled);
    EXPECT_THROW(paperCube(model, 1, stop.get_token()), tasks::Cancelled);
    EXPECT_THROW(buildOptics(FilmStock::color100, FilmPaper::soft, 0, stop.get_token()), tasks::Cancelled);
}

TEST(FilmLookupCube, RefusesDataOfAnotherSize) {
    EXPECT_EQ(FilmLookupCube(std::vector<float>(143748), 33).dimension(), 33);
    EXPECT_DEATH(FilmLookupCube(std::vector<float>(143747), 33), "fit");
    EXPECT_DEATH(FilmLookupCube(std::vector<float>(4), 1), "two nodes");
    EXPECT_DEATH(FilmLookupCube({}, -33), "two nodes");
    EXPECT_DEATH(FilmLookupCube(-33), "two nodes");
}

} // namespace
} // namespace lumisort::film
