#include "film/render/generators/Blur.h"
#include "film/render/generators/Curves.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// Development with inter-layer inhibition: each layer's exposure is divided by 10 to the inhibition that the
/// off-neutral densities of the other two, diffused, exert on it. Densities are over the density scale; the
/// rows of the residual are blurred already (blur_rows).
class CoupledDevelopment : public Generator<CoupledDevelopment> {
public:
    Input<Buffer<float>> exposure{"exposure", 3};          ///< x, y, layer
    Input<Buffer<float>> residualRows{"residual_rows", 3}; ///< x, y, layer
    Input<Buffer<float>> weights{"weights", 1};            ///< 2 · radius + 1
    Input<int> radius{"radius"};
    Input<int> top{"top"};       ///< first row of residual_rows
    Input<int> height{"height"}; ///< their number; rows beyond them repeat the first and last
    Input<Buffer<float>> curveTable{"curves", 2}; ///< see DensityCurves
    Input<Buffer<float>> coupling{"coupling", 2}; ///< inhibiting layer, inhibited layer
    Output<Buffer<float>> density{"density", 3};

    void generate() {
        const DensityCurves curves{curveTable, curveTable.dim(1).extent()};
        std::array<Expr, 3> spread;
        for (int layer = 0; layer < 3; ++layer) {
            Func rows;
            rows(x, y) = residualRows(x, y, layer);
            diffused[layer] =
                blurredColumns(rows, top, height, weights, radius, "diffused" + std::to_string(layer));
            spread[layer] = diffused[layer](x, y);
        }
        const Expr inhibition =
            coupling(0, c) * spread[0] + coupling(1, c) * spread[1] + coupling(2, c) * spread[2];
        density(x, y, c) = curves.density(c, relativeLog(exposure(x, y, c)) - inhibition);
    }

    void schedule() {
        Var block{"block"}, within{"within"};
        density.bound(c, 0, 3)
            .split(x, block, within, 32, TailStrategy::RoundUp)
            .reorder(c, within, y, block)
            .unroll(c)
            .vectorize(within, 8);
        for (auto& layer : diffused) scheduleColumns(layer, density, y);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
    std::array<Func, 3> diffused;
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::CoupledDevelopment, coupled_development)
