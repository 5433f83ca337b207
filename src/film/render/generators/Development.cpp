#include "film/render/generators/Curves.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// Exposures to developed densities above base, over the density scale, through the characteristic curves.
class Development : public Generator<Development> {
public:
    Input<Buffer<float>> exposure{"exposure", 3}; ///< x, y, layer
    Input<Buffer<float>> curveTable{"curves", 2}; ///< see DensityCurves
    Output<Buffer<float>> density{"density", 3};

    void generate() {
        const DensityCurves curves{curveTable, curveTable.dim(1).extent()};
        density(x, y, c) = curves.density(c, relativeLog(exposure(x, y, c)));
    }

    void schedule() {
        density.bound(c, 0, 3).reorder(c, x, y).unroll(c).vectorize(x, 8, TailStrategy::RoundUp);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Development, development)
