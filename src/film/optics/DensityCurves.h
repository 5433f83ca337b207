#pragma once

#include "film/optics/FilmSpectralModel.h"

#include <vector>

namespace lumisort::film {

/// The film's characteristic curves, tabulated: the developed density of each layer, divided by `scale`, at
/// log exposures evenly spaced from `lowestLog` to `highestLog` decades about mid-grey. Beyond them the ends
/// hold.
struct DensityCurves {
    static constexpr std::size_t entries = 2048;
    static constexpr double lowestLog = -6;
    static constexpr double highestLog = 3;

    /// Four floats for each entry: the red, green and blue layer, then 1.
    std::vector<float> texels;
    double scale = 0;

    /// The base-10 log exposure of an entry, relative to mid-grey.
    static constexpr double relativeLog(std::size_t entry) {
        return static_cast<double>(entry) / (entries - 1) * (highestLog - lowestLog) + lowestLog;
    }

    friend bool operator==(const DensityCurves&, const DensityCurves&) = default;
};

DensityCurves densityCurves(const FilmSpectralModel& model);

} // namespace lumisort::film
