#include "film/render/generators/Cube.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// The film's dye densities to the densities that the paper's channels see, all over the density scale.
class Negative : public Generator<Negative> {
public:
    Input<Buffer<float>> density{"density", 3}; ///< x, y, layer
    Input<Buffer<float>> cube{"cube", 2};       ///< see Cube
    Input<int> nodes{"nodes"};
    Output<Buffer<float>> negative{"negative", 3};

    void generate() {
        negative(x, y, c) = lookUp({cube, nodes}, c, density(x, y, 0), density(x, y, 1), density(x, y, 2));
    }

    void schedule() {
        negative.bound(c, 0, 3).reorder(c, x, y).unroll(c).vectorize(x, 8, TailStrategy::RoundUp);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Negative, negative)
