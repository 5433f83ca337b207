#include "film/render/GaussianKernel.h"
#include "film/render/PlaneWaves.h"
#include "film/render/Renderings.h"
#include "support/TemporaryFolder.h"

#include <HalideRuntime.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace lumisort::film::test {

namespace {

constexpr FilmSettings plain{.grain = 0, .halation = 0, .colorSeparation = 0};

images::LinearImage grey(int width, int height, double light) {
    return sceneOf(width, height, [=](int, int) -> std::array<double, 3> { return {light, light, light}; });
}

TEST(FilmLaws, MidGreyPrintsAtEighteenPercent) {
    for (const auto stock : allFilmStocks)
        for (const auto paper : allFilmPapers) {
            auto settings = plain;
            settings.stock = stock;
            settings.paper = paper;
            const auto picture = rendered(recipeOf(settings, 8, 8), grey(8, 8, 0.18));
            // The cubes interpolate between nodes a tenth of a density apart: 1 % of the light.
            for (int c = 0; c < 3; ++c) EXPECT_NEAR(picture.row(c, 3)[3], 0.18, 0.0025) << storedName(stock);
        }
}

TEST(FilmLaws, OneStopOfExposureIsASourceTwiceAsBright) {
    const auto dim = smoothChart(90, 40);
    const auto bright = sceneOf(90, 40, [&](int x, int y) -> std::array<double, 3> {
        return {2.0 * dim.plane(0).at(x, y), 2.0 * dim.plane(1).at(x, y), 2.0 * dim.plane(2).at(x, y)};
    });
    auto brighter = plain;
    brighter.exposure = 1;
    const auto a = rendered(recipeOf(brighter, 90, 40), dim), b = rendered(recipeOf(plain, 90, 40), bright);
    EXPECT_TRUE(sameBits(a, b)); // factors of two are exact
}

TEST(FilmLaws, HalationKeepsTheEnergyOfEachLayer) {
    const int width = 6000, height = 120;
    const auto scene = sceneOf(width, height, [](int x, int y) -> std::array<double, 3> {
        return std::abs(x - 3000) < 3 && std::abs(y - 60) < 3 ? std::array<double, 3>{50, 50, 50}
                                                              : std::array<double, 3>{0, 0, 0};
    });
    auto lit = plain;
    lit.halation = 1;
    const auto before =
        rendered(FilmChain(recipeOf(plain, width, height), 0, 2), scene, {0, 0, width, height});
    const auto after = rendered(FilmChain(recipeOf(lit, width, height), 0, 2), scene, {0, 0, width, height});
    for (int c = 0; c < 3; ++c) {
        EXPECT_NEAR(meanOf(after, c) / meanOf(before, c), 1, 1e-4);
        // Light arrives beside the lamp, and the red layer gets most of it.
        EXPECT_EQ(before.row(c, 60)[3012], 0);
        EXPECT_GT(after.row(c, 60)[3012], 0);
    }
    EXPECT_GT(after.row(0, 60)[3012], 5 * after.row(2, 60)[3012]);
}

TEST(FilmLaws, ALampIsNeutralInItsCoreAndRedOutward) {
    const int width = 6000, height = 64;
    const auto scene = sceneOf(width, height, [](int x, int) -> std::array<double, 3> {
        const double light = std::abs(x - 3000) < 20 ? 60 : x < 1000 ? x < 500 ? 0.1 : 0.3 : 0.0005;
        return {light, light, light};
    });
    auto settings = plain;
    settings.stock = FilmStock::color400;
    const auto without = rendered(recipeOf(settings, width, height), scene);
    settings.halation = 1;
    const auto with = rendered(recipeOf(settings, width, height), scene);
    const auto code = [](const Planes& p, int c, int x) { return 255 * encoded(p.row(c, 32)[x]); };
    for (int c = 0; c < 3; ++c) {
        EXPECT_NEAR(code(with, c, 3000), code(without, c, 3000), 1);
        EXPECT_NEAR(code(with, c, 495), code(without, c, 495), 1) << "an edge between midtones";
        EXPECT_NEAR(code(with, c, 505), code(without, c, 505), 1) << "an edge between midtones";
    }
    const double red = code(with, 0, 3025) - code(without, 0, 3025),
                 blue = code(with, 2, 3025) - code(without, 2, 3025);
    EXPECT_GT(red, 3 * std::max(blue, 1.0));
}

TEST(FilmLaws, GrainVarianceFollowsTheDeviationOfDensity) {
    for (const auto stock : allFilmStocks) {
        FilmSettings settings{.stock = stock, .grain = 1, .halation = 0, .colorSeparation = 0};
        const int size = 1200;
        for (const double light : {0.05, 0.18, 0.6}) {
            const auto recipe = recipeOf(settings, size, size);
            const auto noisy = rendered(FilmChain(recipe, 0, 4), grey(size, size, light), recipe.picture());
            const auto clean = rendered(FilmChain(recipe, 0, 3), grey(size, size, light), recipe.picture());
            for (int c = 0; c < 3; ++c) {
                const double density = clean.row(c, 5)[5];
                double squares = 0, sum = 0;
                for (int y = 0; y < size; ++y)
                    for (int x = 0; x < size; ++x) {
                        const double change = (noisy.row(c, y)[x] - density) * 3.2;
                        squares += change * change;
                        sum += change;
                    }
                const double measured = std::sqrt(squares / size / size);
                const int level = static_cast<int>(density * 32);
                const double low = literal::grainDeviation(recipe, static_cast<std::size_t>(c), level);
                const double high = literal::grainDeviation(recipe, static_cast<std::size_t>(c), level + 1);
                const double strength = low + (high - low) * (density * 32 - level);
                // What this draw of 64 amplitudes has instead of its expectation: the noise at many points,
                // by the formula.
                double noiseSquares = 0;
                for (int i = 0; i < 400; ++i)
                    noiseSquares += std::pow(literal::grainNoise(recipe, i * 997 % size,
                                                                 i * 613 % size)[static_cast<std::size_t>(c)],
                                             2);
                const double expected = strength * std::sqrt(noiseSquares / 400);
                EXPECT_NEAR(measured / expected, 1, 0.12) << storedName(stock) << ' ' << light << ' ' << c;
                EXPECT_LT(std::abs(sum / size / size), 0.05 * measured) << "grain moves the mean";
            }
        }
    }
}

TEST(FilmLaws, TheGrainFieldIsExactInFarColumns) {
    const auto recipe = recipeOf({.grain = 1}, 32'768, 8);
    const auto density = grey(32'768, 8, 0.18);
    const auto clean = rendered(FilmChain(recipe, 0, 3), density, {31'990, 0, 20, 8});
    const auto noisy = rendered(FilmChain(recipe, 0, 4), density, {31'990, 0, 20, 8});
    for (int c = 0; c < 3; ++c)
        for (const int x : {31'990, 32'000, 32'009}) {
            const double before = clean.row(c, 4)[x - 31'990];
            const int level = static_cast<int>(before * 32);
            const auto layer = static_cast<std::size_t>(c);
            const double low = literal::grainDeviation(recipe, layer, level);
            const double high = literal::grainDeviation(recipe, layer, level + 1);
            const double strength = low + (high - low) * (before * 32 - level);
            const double noise = (noisy.row(c, 4)[x - 31'990] - before) * 3.2 / strength;
            // The density's own rounding, 6e-8 · 3.2 over a deviation of 0.01, is a fifth of this.
            EXPECT_NEAR(noise, literal::grainNoise(recipe, x, 4)[layer], 1e-4);
        }
}

TEST(FilmLaws, PreviewAndExportShowTheSameField) {
    // Two pixels of 2:1 scales cover the same film where their centres coincide; each sees the field through
    // its own response, so that low waves agree and high ones vanish.
    const auto small = recipeOf({.stock = FilmStock::mono400, .grain = 1}, 3000, 6);
    const auto large = recipeOf({.stock = FilmStock::mono400, .grain = 1}, 6000, 12);
    double both = 0, squaresSmall = 0, squaresLarge = 0;
    for (int x = 0; x < 600; ++x) {
        const double a = literal::grainNoise(small, x, 2)[0];
        double b = 0;
        for (int dy = 0; dy < 2; ++dy)
            for (int dx = 0; dx < 2; ++dx) b += literal::grainNoise(large, 2 * x + dx, 4 + dy)[0] / 4;
        both += a * b;
        squaresSmall += a * a;
        squaresLarge += b * b;
    }
    EXPECT_GT(both / std::sqrt(squaresSmall * squaresLarge), 0.9);
}

TEST(FilmLaws, AGradientHasNoBands) {
    const int width = 4000;
    const auto sky = sceneOf(width, 4, [=](int x, int) -> std::array<double, 3> {
        const double u = static_cast<double>(x) / width;
        return {0.15 + 0.2 * u, 0.3 + 0.2 * u, 0.55 + 0.2 * u};
    });
    for (const auto stock : allFilmStocks) {
        auto settings = plain;
        settings.stock = stock;
        settings.colorSeparation = 1;
        const auto picture = rendered(recipeOf(settings, width, 4), sky);
        for (int c = 0; c < 3; ++c) {
            double steepest = 0, jump = 0;
            for (int x = 1; x < width; ++x) {
                const double step = encoded(picture.row(c, 2)[x]) - encoded(picture.row(c, 2)[x - 1]);
                steepest = std::max(steepest, std::abs(step));
                if (x > 1)
                    jump = std::max(jump, std::abs(step - (encoded(picture.row(c, 2)[x - 1]) -
                                                           encoded(picture.row(c, 2)[x - 2]))));
            }
            // Steps of a quarter of a thousandth: where the slope changes at a node of a cube, no step is
            // visible.
            EXPECT_LT(255 * jump, 0.1) << storedName(stock) << ' ' << c;
            EXPECT_LT(255 * steepest, 0.25);
        }
    }
}

TEST(FilmLaws, EveryCornerOfTheSettingsIsFinite) {
    const auto scene = chart(130, 70);
    for (int corner = 0; corner < 128; ++corner) {
        const auto end = [corner](int bit, double low, double high) {
            return corner >> bit & 1 ? high : low;
        };
        const FilmSettings settings{.stock = corner & 1 ? FilmStock::mono400 : FilmStock::portra400,
                                    .paper = corner & 2 ? FilmPaper::soft : FilmPaper::glossy,
                                    .exposure = end(2, -5, 5),
                                    .printExposure = end(3, -5, 5),
                                    .grain = end(4, 0, 1),
                                    .halation = end(5, 0, 1),
                                    .colorSeparation = end(6, 0, 1)};
        auto withoutGrain = settings;
        withoutGrain.grain = 0;
        const auto picture = rendered(recipeOf(settings, 130, 70), scene);
        const auto clean = rendered(recipeOf(withoutGrain, 130, 70), scene);
        for (int c = 0; c < 3; ++c) {
            ASSERT_TRUE(std::isfinite(meanOf(picture, c))) << corner;
            EXPECT_NEAR(encoded(meanOf(picture, c)), encoded(meanOf(clean, c)), 2.0 / 255) << corner;
        }
    }
}

TEST(GaussianKernel, ReachesSoFarThatNothingIsSeenToBeMissing) {
    for (const double sigma : {0.05, 0.2, 0.5, 1.0, 3.7, 13.0, 60.0}) {
        const GaussianKernel kernel(sigma);
        const int reach = static_cast<int>(std::ceil(10 * sigma));
        double whole = 0;
        for (int i = -reach; i <= reach; ++i) whole += std::exp(-0.5 * i * i / (sigma * sigma));
        // The blurred edge: the largest error of any picture between 0 and 1.
        double truth = 0, blurred = 0, largest = 0;
        for (int i = -reach; i <= reach; ++i) {
            truth += std::exp(-0.5 * i * i / (sigma * sigma)) / whole;
            if (std::abs(i) <= kernel.radius)
                blurred += kernel.weights[static_cast<std::size_t>(i + kernel.radius)];
            largest = std::max(largest, std::abs(truth - blurred));
        }
        EXPECT_LE(largest, 1e-4) << sigma;
    }
}

/// 0: what the processor has, 1: SSE 4.1 at most, 2: the baseline.
int allowedSet = 0;

int allowed(int words, const std::uint64_t* features) {
    const auto asks = [&](int feature) {
        return feature / 64 < words && (features[feature / 64] >> (feature % 64) & 1) != 0;
    };
    if (allowedSet > 0 && asks(halide_target_feature_avx)) return 0;
    if (allowedSet > 1 && asks(halide_target_feature_sse41)) return 0;
    return halide_default_can_use_target_features(words, features);
}

/// Not a test: what the next one lets a process of its own do, as a pipeline keeps the set that it chose
/// first.
TEST(InstructionSets, DISABLED_RenderWithOne) {
    allowedSet = std::atoi(std::getenv("LUMISORT_INSTRUCTION_SET"));
    halide_set_custom_can_use_target_features(allowed);
    const auto recipe = recipeOf({.grain = 1, .halation = 1, .colorSeparation = 1}, 1400, 90);
    const auto picture = rendered(recipe, chart(1400, 90));
    std::ofstream file(std::getenv("LUMISORT_PICTURE"), std::ios::binary);
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < 90; ++y)
            file.write(reinterpret_cast<const char*>(picture.row(c, y)), 1400 * sizeof(float));
}

TEST(InstructionSets, AgreeOnOnePicture) {
    const lumisort::test::TemporaryFolder folder;
    const auto self = std::filesystem::read_symlink("/proc/self/exe").string();
    std::vector<std::vector<float>> pictures;
    for (const char* set : {"0", "1", "2"}) {
        const auto file = (folder.path() / set).string();
        const auto command = "LUMISORT_INSTRUCTION_SET=" + std::string(set) + " LUMISORT_PICTURE='" + file +
                             "' '" + self +
                             "' --gtest_also_run_disabled_tests "
                             "--gtest_filter=InstructionSets.DISABLED_RenderWithOne >/dev/null";
        ASSERT_EQ(std::system(command.c_str()), 0);
        auto& picture = pictures.emplace_back(3 * 1400 * 90);
        std::ifstream(file, std::ios::binary)
            .read(reinterpret_cast<char*>(picture.data()),
                  static_cast<std::streamsize>(picture.size() * sizeof(float)));
    }
    for (std::size_t set = 1; set < 3; ++set) {
        double largest = 0;
        for (std::size_t i = 0; i < pictures[0].size(); ++i)
            largest = std::max(largest, std::abs(encoded(pictures[0][i]) - encoded(pictures[set][i])));
        EXPECT_LE(largest, 1.0 / 4096) << set;
        EXPECT_NE(pictures[0], pictures[set]) << "the same code ran twice";
    }
}

} // namespace

} // namespace lumisort::film::test
