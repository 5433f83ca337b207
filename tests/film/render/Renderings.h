#pragma once

#include "film/render/FilmChain.h"
#include "film/render/LiteralChain.h"

#include <cmath>
#include <random>
#include <thread>

namespace lumisort::film::test {

/// The optics of a pair, built once for all tests of the program.
inline std::shared_ptr<const FilmOptics> opticsOf(FilmStock stock, FilmPaper paper) {
    static std::array<std::array<std::shared_ptr<const FilmOptics>, 2>, 4> built;
    auto& optics = built.at(static_cast<std::size_t>(stock)).at(static_cast<std::size_t>(paper));
    if (!optics) optics = std::make_shared<const FilmOptics>(buildOptics(stock, paper));
    return optics;
}

inline FilmRecipe recipeOf(const FilmSettings& settings, int width, int height,
                           std::uint32_t seed = 0xC0FFEE) {
    return {opticsOf(settings.stock, settings.paper), settings, width, height, seed};
}

/// A scene from a function of (x, y) to three numbers.
template <class Function>
images::LinearImage sceneOf(int width, int height, Function function) {
    images::LinearImage scene(width, height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::array<double, 3> rgb = function(x, y);
            for (int c = 0; c < 3; ++c)
                scene.plane(c).at(x, y) = static_cast<float>(rgb[static_cast<std::size_t>(c)]);
        }
    return scene;
}

/// Ramps of light, saturated colours within and beyond the primaries, hard edges and lamps eight times as
/// bright as white.
inline images::LinearImage chart(int width, int height) {
    return sceneOf(width, height, [=](int x, int y) -> std::array<double, 3> {
        const double u = (x + 0.5) / width, v = (y + 0.5) / height;
        if ((x * 7 + y * 13) % 101 == 0) return {8, 7, 6};
        if ((x / 9 + y / 7) % 3 == 0) return {std::pow(2.0, 8 * u - 7), std::pow(2.0, 8 * v - 7), 0.02};
        if ((x / 9 + y / 7) % 3 == 1) return {1.2 * u - 0.1, 0.9 * (1 - u) * v, 1.3 * v - 0.1};
        return {0.18, 0.18, 0.18};
    });
}

/// Colours that change slowly.
inline images::LinearImage smoothChart(int width, int height) {
    return sceneOf(width, height, [=](int x, int y) -> std::array<double, 3> {
        const double u = (x + 0.5) / width, v = (y + 0.5) / height;
        return {0.02 + 0.7 * u, 0.05 + 0.5 * v, 0.3 + 0.2 * std::sin(3 * u + 2 * v)};
    });
}

/// The executors of the tests: one after the other, the same in random order on four threads.
inline void inOrder(std::size_t count, const std::function<void(std::size_t)>& work, std::stop_token) {
    for (std::size_t i = 0; i < count; ++i) work(i);
}

inline void shuffled(std::size_t count, const std::function<void(std::size_t)>& work, std::stop_token) {
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i) order[i] = i;
    std::ranges::shuffle(order, std::minstd_rand(static_cast<unsigned>(count)));
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> workers;
    for (int worker = 0; worker < 4; ++worker)
        workers.emplace_back([&] {
            for (std::size_t i = next++; i < count; i = next++) work(order[i]);
        });
}

inline void copyInto(Planes& whole, const PlaneView& tile) {
    for (int c = 0; c < 3; ++c)
        for (int y = tile.region.y; y < tile.region.bottom(); ++y)
            std::copy_n(tile.row(c, y), tile.region.width,
                        whole.row(c, y) + (tile.region.x - whole.region().x));
}

inline Planes rendered(const FilmChain& chain, const images::LinearImage& scene, const Rectangle& wanted,
                       const ParallelFor& parallelFor = inOrder) {
    Planes result(wanted);
    renderTiles(chain, scene, wanted, parallelFor, [&](const PlaneView& tile) { copyInto(result, tile); });
    return result;
}

inline Planes rendered(const FilmRecipe& recipe, const images::LinearImage& scene) {
    return rendered(FilmChain(recipe), scene, recipe.picture());
}

/// The sRGB code of linear light, 0 to 1.
inline double encoded(double light) {
    light = std::clamp(light, 0.0, 1.0);
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

/// The largest difference of sRGB codes, full scale being 1.
inline double largestDifference(const Planes& picture, const literal::Image& truth) {
    double largest = 0;
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < truth.height; ++y)
            for (int x = 0; x < truth.width; ++x) {
                const double difference = std::abs(encoded(picture.row(c, y)[x]) -
                                                   encoded(truth.at(x, y)[static_cast<std::size_t>(c)]));
                if (!(difference <= largest)) largest = difference; // a NaN, too
            }
    return largest;
}

inline double meanOf(const Planes& picture, int channel) {
    double sum = 0;
    const auto& region = picture.region();
    for (int y = region.y; y < region.bottom(); ++y)
        for (int x = 0; x < region.width; ++x) sum += picture.row(channel, y)[x];
    return sum / (static_cast<double>(region.width) * region.height);
}

inline bool sameBits(const Planes& whole, const Planes& part) {
    const auto& region = part.region();
    for (int c = 0; c < 3; ++c)
        for (int y = region.y; y < region.bottom(); ++y)
            if (!std::equal(part.row(c, y), part.row(c, y) + region.width,
                            whole.row(c, y) + (region.x - whole.region().x)))
                return false;
    return true;
}

} // namespace lumisort::film::test
