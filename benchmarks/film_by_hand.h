#pragma once

#include "film/render/FilmChain.h"

namespace lumisort::film::byhand {

/// The work of the film chain written by hand for AVX2 with FMA, eight pixels at a time: what generated code
/// is measured against. Both need a processor with these instructions and a width that is a multiple of
/// eight.

/// Exposure, development without coupling, negative, print and paper in one loop, without stores in between.
void pointwise(const FilmRecipe& recipe, const images::LinearImage& scene, images::LinearImage& light);

/// A sum of `waves` plane waves in three layers with a vectorised sine and cosine for each; returns a sum of
/// all pixels.
double planeWaves(int waves, int width, int height);

} // namespace lumisort::film::byhand
