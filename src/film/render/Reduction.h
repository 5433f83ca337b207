#pragma once

#include "film/render/FilmChain.h"
#include "platform/images/LinearImage.h"

namespace lumisort::film {

enum class ReductionFilter {
    /// Three lobes to a side: the sharpest, for a print, whose light lies between 0 and 1.
    lanczos,
    /// The mean over each pixel's area, for the light of a scene: negative lobes would draw a dark ring round
    /// a
    /// lamp that is a hundred times as bright as its surroundings, and a bright one round that.
    area,
};

/// A picture reduced by one factor in both directions until its longest side has `longEdge` pixels; width and
/// height are whole pixels, rounded down, at least 1. Edges repeat. `image` must be larger. Throws
/// tasks::Cancelled.
images::LinearImage reduced(const images::LinearImage& image, int longEdge, ReductionFilter filter,
                            const ParallelFor& parallelFor, const std::stop_token& stop);

} // namespace lumisort::film
