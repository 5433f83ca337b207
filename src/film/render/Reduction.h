#pragma once

#include "film/render/FilmChain.h"
#include "platform/images/LinearImage.h"

namespace lumisort::film {

/// A picture reduced by Lanczos's filter (three lobes to a side) by one factor in both directions until its
/// longest side has `longEdge` pixels; width and height are whole pixels, rounded down, at least 1. Edges
/// repeat. `image` must be larger. Throws tasks::Cancelled.
images::LinearImage reduced(const images::LinearImage& image, int longEdge, const ParallelFor& parallelFor,
                            const std::stop_token& stop);

} // namespace lumisort::film
