#pragma once

#include "film/render/Stage.h"
#include "platform/images/LinearImage.h"

#include <array>
#include <vector>

namespace lumisort::film::literal {

/// A picture of three doubles a pixel, rows from the top.
struct Image {
    Image(int w, int h)
        : width(w), height(h), pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}

    std::array<double, 3>& at(int x, int y) { return pixels[index(x, y)]; }
    const std::array<double, 3>& at(int x, int y) const { return pixels[index(x, y)]; }

    int width, height;
    std::vector<std::array<double, 3>> pixels;

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x);
    }
};

Image imageOf(const images::LinearImage& scene);

// The formulas as they are written, one pixel at a time in double precision over the whole picture: what the
// strips must agree with. Every function takes the whole picture and returns the whole picture.

Image spectralExposure(const Image& scene, const FilmRecipe& recipe);
Image halation(const Image& exposure, const FilmRecipe& recipe);
Image development(const Image& exposure, const FilmRecipe& recipe);
Image grain(const Image& density, const FilmRecipe& recipe);
Image print(const Image& density, const FilmRecipe& recipe);

/// All of them.
Image film(const Image& scene, const FilmRecipe& recipe);

/// Convolution with a sampled Gaussian that reaches ten standard deviations, edges repeated.
Image gaussianBlur(const Image& image, double sigma);

/// The grain's noise at a point of the picture, before the deviation of density and the amount.
std::array<double, 3> grainNoise(const FilmRecipe& recipe, int x, int y);
/// Standard deviation of density in one layer at one of 33 levels of density.
double grainDeviation(const FilmRecipe& recipe, std::size_t layer, int level);

} // namespace lumisort::film::literal
