// The film chain by stage on a 24-megapixel picture, beside loops of the same work written by hand; and what
// each setting changes in a picture.
//
//   benchmark-film_render [width height]

#include "film/render/FilmChain.h"
#include "film_by_hand.h"
#include "platform/tasks/ParallelFor.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using namespace lumisort;
using namespace lumisort::film;

double seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Colours and light that change from pixel to pixel as a photo's do.
images::LinearImage photo(int width, int height) {
    images::LinearImage scene(width, height);
    unsigned random = 1;
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                random = random * 1664525 + 1013904223;
                const float noise = static_cast<float>(random >> 8) / (1 << 24);
                const float wave =
                    static_cast<float>(((x + c * 700) / 3) % 1000 * ((y + c * 300) / 2 % 1000)) / 1e6f;
                scene.plane(c).at(x, y) = 0.02f + 0.8f * wave + 0.05f * noise;
            }
    return scene;
}

ParallelFor onThreads(int threads) {
    return [threads](std::size_t count, const std::function<void(std::size_t)>& work, std::stop_token stop) {
        tasks::parallelFor(count, threads, stop, work);
    };
}

struct Run {
    double wall = 0;
    double stages[7] = {}; ///< nanoseconds per pixel
    double sum = 0;
};

/// The faster of two runs.
Run measured(const FilmRecipe& recipe, const images::LinearImage& scene, int threads) {
    const FilmChain chain(recipe);
    const double pixels = static_cast<double>(recipe.width) * recipe.height;
    Run best{.wall = 1e9};
    for (int run = 0; run < 2; ++run) {
        StageTimes times{};
        const double start = seconds();
        renderTiles(chain, scene, recipe.picture(), onThreads(threads), [](const PlaneView&) {}, &times);
        Run now{.wall = seconds() - start};
        for (std::size_t i = 0; i < times.size(); ++i)
            now.sum += now.stages[i] = static_cast<double>(times[i]) / pixels;
        if (now.wall < best.wall) best = now;
    }
    return best;
}

void stageTable(const std::shared_ptr<const FilmOptics>& optics, const images::LinearImage& scene) {
    const FilmRecipe recipe{
        optics, {.grain = 1, .halation = 1, .colorSeparation = 1}, scene.width(), scene.height(), 1};
    const double pixels = static_cast<double>(recipe.width) * recipe.height;
    const double start = seconds();
    const FilmChain prepared(recipe);
    std::printf("%d x %d, everything on; prepared in %.1f ms\n", recipe.width, recipe.height,
                (seconds() - start) * 1e3);
    for (const int threads : {1, 2}) {
        const auto run = measured(recipe, scene, threads);
        std::printf("%d threads: %.3f s, %.1f ns per pixel and core\n", threads, run.wall,
                    run.wall * 1e9 * threads / pixels);
        for (std::size_t i = 0; i < std::size(run.stages); ++i)
            std::printf("  %-14s %6.1f ns\n", filmStages()[i].name.data(), run.stages[i]);
    }
}

void besideHandWrittenLoops(const std::shared_ptr<const FilmOptics>& optics,
                            const images::LinearImage& scene) {
    const double pixels = static_cast<double>(scene.width()) * scene.height();
    const FilmRecipe plain{
        optics, {.grain = 0, .halation = 0, .colorSeparation = 0}, scene.width(), scene.height(), 1};
    const auto chain = measured(plain, scene, 1);
    images::LinearImage light(scene.width(), scene.height());
    double hand = 1e9;
    for (int run = 0; run < 2; ++run) {
        const double start = seconds();
        byhand::pointwise(plain, scene, light);
        hand = std::min(hand, (seconds() - start) * 1e9 / pixels);
    }
    std::printf("pointwise chain   %6.1f ns   by hand %6.1f ns   ratio %.2f\n", chain.sum, hand,
                chain.sum / hand);

    const FilmRecipe grainy{
        optics, {.grain = 1, .halation = 0, .colorSeparation = 0}, scene.width(), scene.height(), 1};
    const double grain = measured(grainy, scene, 1).stages[3];
    const double start = seconds();
    const double sum = byhand::planeWaves(64, 1024, 256);
    const double literal = (seconds() - start) * 1e9 / (1024 * 256);
    std::printf("grain, 64 waves   %6.1f ns   with sine and cosine %6.1f ns   ratio %.2f   (%g)\n", grain,
                literal, grain / literal, sum);
}

/// Mean, standard deviation and colourfulness of a picture, and the light a lamp throws beside itself.
struct Measures {
    double mean = 0, deviation = 0, saturation = 0, glow = 0;
};

Measures measures(const FilmRecipe& recipe, const images::LinearImage& scene) {
    const FilmChain chain(recipe);
    Planes picture(recipe.picture());
    renderTiles(chain, scene, recipe.picture(), onThreads(1), [&](const PlaneView& tile) {
        for (int c = 0; c < 3; ++c)
            for (int y = tile.region.y; y < tile.region.bottom(); ++y)
                std::copy_n(tile.row(c, y), tile.region.width, picture.row(c, y) + tile.region.x);
    });
    Measures m;
    const int third = recipe.width / 3;
    const auto at = [&](int c, int x, int y) { return static_cast<double>(picture.row(c, y)[x]); };
    double squares = 0;
    for (int y = 0; y < recipe.height; ++y)
        for (int x = 0; x < third; ++x) {
            m.mean += at(1, x, y);
            squares += at(1, x, y) * at(1, x, y);
            m.saturation += at(0, x + third, y) - at(2, x + third, y);
        }
    const double count = static_cast<double>(third) * recipe.height;
    m.mean /= count;
    m.saturation /= count;
    m.deviation = std::sqrt(std::max(0.0, squares / count - m.mean * m.mean));
    m.glow = at(0, 5 * third / 2 + 6, recipe.height / 2);
    return m;
}

/// A grey, a colour, and a lamp on black, side by side.
images::LinearImage target(int width, int height) {
    images::LinearImage scene(width, height);
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const float colour[] = {0.3f, 0.18f, 0.1f};
                const bool lamp = std::abs(x - 5 * (width / 3) / 2) < 4;
                scene.plane(c).at(x, y) = x < width / 3         ? 0.18f
                                          : x < 2 * (width / 3) ? colour[c]
                                          : lamp                ? 30.0f
                                                                : 0.001f;
            }
    return scene;
}

void settingsTable() {
    const auto scene = target(1500, 64);
    const auto row = [&](const char* name, const char* what, double Measures::* measure,
                         double FilmSettings::* setting, std::initializer_list<double> sweep) {
        std::printf("  %-17s %-26s", name, what);
        double before = 0, first = 0;
        bool rises = true, falls = true;
        for (const double value : sweep) {
            FilmSettings settings{
                .exposure = 0, .printExposure = 0, .grain = 0, .halation = 0, .colorSeparation = 0};
            settings.*setting = value;
            const auto optics =
                std::make_shared<const FilmOptics>(buildOptics(settings.stock, settings.paper));
            const double now = measures({optics, settings, scene.width(), scene.height(), 1}, scene).*measure;
            if (value != *sweep.begin()) {
                rises &= now > before;
                falls &= now < before;
            } else {
                first = now;
            }
            before = now;
            std::printf(" %9.5f", now);
        }
        std::printf("   %s by %.5f\n",
                    rises   ? "rises"
                    : falls ? "falls"
                            : "NOT MONOTONE",
                    std::abs(before - first));
    };
    std::printf("what each setting moves, over its range (portra400 on glossy, 1,500 pixels):\n");
    row("exposure", "mean of mid-grey", &Measures::mean, &FilmSettings::exposure, {-5, -2, 0, 2, 5});
    row("printExposure", "mean of mid-grey", &Measures::mean, &FilmSettings::printExposure,
        {-5, -2, 0, 2, 5});
    row("grain", "deviation of mid-grey", &Measures::deviation, &FilmSettings::grain,
        {0, 0.25, 0.5, 0.75, 1});
    row("halation", "red 6 pixels off a lamp", &Measures::glow, &FilmSettings::halation,
        {0, 0.25, 0.5, 0.75, 1});
    row("colorSeparation", "red less blue of an orange", &Measures::saturation,
        &FilmSettings::colorSeparation, {0, 0.25, 0.5, 0.75, 1});
    for (const auto stock : allFilmStocks)
        for (const auto paper : allFilmPapers) {
            const auto optics = std::make_shared<const FilmOptics>(buildOptics(stock, paper));
            for (const auto format : allFilmFormats) {
                const FilmSettings settings{
                    .stock = stock, .paper = paper, .format = format, .grain = 1, .halation = 0};
                const auto m = measures({optics, settings, scene.width(), scene.height(), 1}, scene);
                std::printf("  %-10s %-7s %-13s mid-grey %.4f, grain %.4f, orange's red less blue %.4f\n",
                            storedName(stock).data(), storedName(paper).data(), storedName(format).data(),
                            m.mean, m.deviation, m.saturation);
            }
        }
}

} // namespace

int main(int argc, char** argv) {
    const int width = argc > 2 ? std::atoi(argv[1]) : 6000, height = argc > 2 ? std::atoi(argv[2]) : 4000;
    const auto scene = photo(width, height);
    const auto optics =
        std::make_shared<const FilmOptics>(buildOptics(FilmStock::portra400, FilmPaper::glossy));
    stageTable(optics, scene);
    besideHandWrittenLoops(optics, scene);
    settingsTable();
}
