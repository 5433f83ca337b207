#include "film/render/Renderings.h"
#include "platform/tasks/Cancellation.h"

#include <gmock/gmock.h>

namespace lumisort::film::test {

namespace {

struct Size {
    int width, height;
};

// The chain computes in single precision: each stage rounds to 6e-8 of its value, logarithms and exponentials
// to 2e-7. The steepest way from a density to a code (printing at the paper's slope, 1.2 e-7 · 3.2 · slope)
// multiplies that by less than 100; the blurs leave out 2e-5 of their Gaussian. Pictures with hard edges may
// differ by a quarter of an 8-bit code.
constexpr double edgeTolerance = 1.0 / 1024, smoothTolerance = 1.0 / 4096;

TEST(FilmChain, AgreesWithTheLiteralChainForEveryStockAndPaper) {
    for (const auto stock : allFilmStocks)
        for (const auto paper : allFilmPapers) {
            FilmSettings settings{
                .stock = stock, .paper = paper, .grain = 0.8, .halation = 1, .colorSeparation = 1};
            for (const auto [width, height] :
                 {Size{97, 61}, Size{64, 4}, Size{1, 37}, Size{53, 1}, Size{1, 1}}) {
                const auto recipe = recipeOf(settings, width, height);
                const auto hard = chart(width, height), smooth = smoothChart(width, height);
                EXPECT_LE(
                    largestDifference(rendered(recipe, hard), literal::film(literal::imageOf(hard), recipe)),
                    edgeTolerance)
                    << storedName(stock) << ' ' << storedName(paper) << ' ' << width << 'x' << height;
                EXPECT_LE(largestDifference(rendered(recipe, smooth),
                                            literal::film(literal::imageOf(smooth), recipe)),
                          smoothTolerance)
                    << storedName(stock) << ' ' << storedName(paper) << ' ' << width << 'x' << height;
            }
        }
}

TEST(FilmChain, AgreesWithTheLiteralChainWhereBlursAreWide) {
    // The long edge sets the scale: the widest blur has 3.75 pixels here, and 5 below.
    for (const auto [width, height] : {Size{3001, 17}, Size{13, 4000}}) {
        const FilmSettings settings{
            .exposure = 1.5, .printExposure = -0.5, .grain = 1, .halation = 1, .colorSeparation = 1};
        const auto recipe = recipeOf(settings, width, height);
        const auto scene = chart(width, height);
        EXPECT_LE(largestDifference(rendered(recipe, scene), literal::film(literal::imageOf(scene), recipe)),
                  edgeTolerance);
    }
}

TEST(FilmChain, RendersAnyRectangleAsThatPartOfTheWhole) {
    for (const auto stock : {FilmStock::portra400, FilmStock::mono400})
        for (const auto [width, height] : {Size{613, 457}, Size{1500, 90}, Size{7, 1100}, Size{1280, 1030}}) {
            const FilmSettings settings{.stock = stock, .grain = 1, .halation = 1, .colorSeparation = 1};
            const FilmChain chain(recipeOf(settings, width, height));
            const auto scene = chart(width, height);
            const auto whole = rendered(chain, scene, chain.picture());
            EXPECT_TRUE(sameBits(whole, rendered(chain, scene, chain.picture(), shuffled)));
            std::minstd_rand random(5);
            for (int i = 0; i < 10; ++i) {
                const auto pick = [&](int limit) {
                    return static_cast<int>(random() % static_cast<unsigned>(limit));
                };
                const int x = pick(width), y = pick(height);
                const Rectangle part{x, y, 1 + pick(width - x), 1 + pick(height - y)};
                EXPECT_TRUE(sameBits(whole, rendered(chain, scene, part)))
                    << part.x << ' ' << part.y << ' ' << part.width << ' ' << part.height;
            }
        }
}

TEST(FilmChain, ResumesFromAnyStage) {
    const auto recipe = recipeOf({.grain = 1, .halation = 1, .colorSeparation = 1}, 700, 530);
    const auto scene = chart(700, 530);
    const auto whole = rendered(recipe, scene);
    for (std::size_t cut = 1; cut < filmStages().size(); ++cut) {
        const FilmChain first(recipe, 0, cut), second(recipe, cut, filmStages().size());
        const auto kept = rendered(first, scene, recipe.picture());
        Planes result(recipe.picture());
        renderTiles(second, kept, recipe.picture(), shuffled,
                    [&](const PlaneView& tile) { copyInto(result, tile); });
        EXPECT_TRUE(sameBits(whole, result)) << cut;
    }
}

TEST(FilmChain, TakesPixelsThatAreNoNumbers) {
    const auto scene = sceneOf(40, 30, [](int x, int y) -> std::array<double, 3> {
        constexpr double inf = std::numeric_limits<double>::infinity(),
                         nan = std::numeric_limits<double>::quiet_NaN();
        if (x == 5) return {nan, 0.2, nan};
        if (y == 7) return {inf, 0.2, -inf};
        return {0.2, 0.2, 0.2};
    });
    const auto recipe = recipeOf({.exposure = 5, .grain = 1, .halation = 1, .colorSeparation = 1}, 40, 30);
    const auto picture = rendered(recipe, scene);
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < 30; ++y)
            for (int x = 0; x < 40; ++x) ASSERT_TRUE(std::isfinite(picture.row(c, y)[x])) << x << ' ' << y;
}

TEST(FilmChain, StopsBetweenTiles) {
    const auto recipe = recipeOf({}, 2000, 1500);
    const auto scene = smoothChart(2000, 1500);
    const FilmChain chain(recipe);
    std::stop_source stop;
    int taken = 0;
    EXPECT_THROW(renderTiles(
                     chain, scene, recipe.picture(), inOrder,
                     [&](const PlaneView&) {
                         ++taken;
                         stop.request_stop();
                     },
                     nullptr, stop.get_token()),
                 tasks::Cancelled);
    EXPECT_EQ(taken, 1);
}

TEST(FilmChain, KnowsWhatEachSettingShapes) {
    // The first stage whose result changes; a change before it would be redone for nothing, one after it be
    // missed.
    const FilmSettings base;
    struct Case {
        FilmSettings changed;
        std::size_t first;
    };
    for (const auto& [changed, first] :
         {Case{{.exposure = 1}, 0}, Case{{.halation = 0.9}, 1}, Case{{.colorSeparation = 0.9}, 2},
          Case{{.grain = 0.9}, 3}, Case{{.printExposure = 1}, 5},
          Case{{.format = FilmFormat::mediumFormat}, 1}}) {
        const auto scene = chart(1500, 24);
        for (std::size_t count = 1; count <= filmStages().size(); ++count) {
            const bool equalKeys = settingsRead(base, count) == settingsRead(changed, count);
            EXPECT_EQ(equalKeys, count <= first);
            const auto before =
                rendered(FilmChain(recipeOf(base, 1500, 24), 0, count), scene, {0, 0, 1500, 24});
            const auto after =
                rendered(FilmChain(recipeOf(changed, 1500, 24), 0, count), scene, {0, 0, 1500, 24});
            EXPECT_EQ(sameBits(before, after), count <= first) << count;
        }
    }
}

} // namespace

} // namespace lumisort::film::test
