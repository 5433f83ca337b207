#pragma once

#include <Halide.h>

namespace lumisort::film::pipelines {

/// Base-10 log of an exposure relative to mid-grey; 0 and below count as 1e-12.
inline Halide::Expr relativeLog(const Halide::Expr& exposure) {
    return Halide::log(Halide::max(exposure, 1e-12f) * float(1 / 0.18)) * 0.43429448190325176f;
}

/// The developed densities of the layers over log exposure: a buffer of 2 dimensions, layer (4: red, green,
/// blue, 1) and entry, evenly spaced from relative log exposure -6 to +3, between which it is linear and
/// beyond which it stays at its first or last entry.
struct DensityCurves {
    Halide::Func table;
    Halide::Expr entries;

    Halide::Expr density(const Halide::Expr& layer, const Halide::Expr& relativeLogExposure) const {
        using namespace Halide;
        const Expr position =
            clamp((relativeLogExposure + 6.0f) * (1.0f / 9), 0.0f, 1.0f) * cast<float>(entries - 1);
        const Expr low = clamp(cast<int>(position), 0, entries - 2);
        const Expr weight = position - cast<float>(low);
        return table(layer, low) + (table(layer, low + 1) - table(layer, low)) * weight;
    }
};

} // namespace lumisort::film::pipelines
