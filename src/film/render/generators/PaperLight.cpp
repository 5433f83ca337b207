#include "film/render/generators/Cube.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// The light that a print reflects, as linear display RGB: the paper cube holds it between the bounds that
/// any reflectance can reach.
class PaperLight : public Generator<PaperLight> {
public:
    Input<Buffer<float>> print{"print", 3}; ///< x, y, channel: paper dye densities over the density scale
    Input<Buffer<float>> cube{"cube", 2};   ///< see Cube
    Input<int> nodes{"nodes"};
    Input<Buffer<float>> bounds{"bounds", 2}; ///< channel, 2: minimum and range
    Output<Buffer<float>> light{"light", 3};

    void generate() {
        light(x, y, c) =
            lookUp({cube, nodes}, c, print(x, y, 0), print(x, y, 1), print(x, y, 2)) * bounds(c, 1) +
            bounds(c, 0);
    }

    void schedule() {
        light.bound(c, 0, 3).reorder(c, x, y).unroll(c).vectorize(x, 8, TailStrategy::RoundUp);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::PaperLight, paper_light)
