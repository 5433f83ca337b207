#include "film/render/generators/Curves.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// The density that each layer develops above or below the grey of the same mean log exposure, over the
/// density scale: what diffuses between the layers and inhibits their neighbours.
class OffNeutralDensity : public Generator<OffNeutralDensity> {
public:
    Input<Buffer<float>> exposure{"exposure", 3}; ///< x, y, layer
    Input<Buffer<float>> curveTable{"curves", 2}; ///< see DensityCurves
    Output<Buffer<float>> residual{"residual", 3};

    void generate() {
        const DensityCurves curves{curveTable, curveTable.dim(1).extent()};
        logs(x, y, c) = relativeLog(exposure(x, y, c));
        mean(x, y) = (logs(x, y, 0) + logs(x, y, 1) + logs(x, y, 2)) * (1.0f / 3);
        residual(x, y, c) = curves.density(c, logs(x, y, c)) - curves.density(c, mean(x, y));
    }

    void schedule() {
        residual.bound(c, 0, 3).reorder(c, x, y).unroll(c).vectorize(x, 8, TailStrategy::RoundUp);
        logs.compute_at(residual, x).bound(c, 0, 3).unroll(c).vectorize(x);
        mean.compute_at(residual, x).vectorize(x);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
    Func logs{"logs"}, mean{"mean"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::OffNeutralDensity, off_neutral_density)
