#include "film/render/generators/Blur.h"

namespace lumisort::film::pipelines {

using namespace Halide;

/// The exposure of one layer after halation: a fraction of the light is taken from where it fell and spread
/// by a narrow core and a wide tail, both Gaussian. The rows of both are blurred already (blur_rows).
class Halation : public Generator<Halation> {
public:
    Input<Buffer<float>> exposure{"exposure", 2};  ///< x, y
    Input<Buffer<float>> coreRows{"core_rows", 2}; ///< x, y
    Input<Buffer<float>> tailRows{"tail_rows", 2}; ///< x, y
    Input<Buffer<float>> coreWeights{"core_weights", 1};
    Input<int> coreRadius{"core_radius"};
    Input<Buffer<float>> tailWeights{"tail_weights", 1};
    Input<int> tailRadius{"tail_radius"};
    Input<int> top{"top"};                ///< first row of the rows above
    Input<int> height{"height"};          ///< their number; rows beyond them repeat the first and last
    Input<float> fraction{"fraction"};    ///< of the light that is scattered
    Input<float> tailShare{"tail_share"}; ///< of the scattered light
    Output<Buffer<float>> halated{"halated", 2};

    void generate() {
        core = blurredColumns(coreRows, top, height, coreWeights, coreRadius, "core");
        tail = blurredColumns(tailRows, top, height, tailWeights, tailRadius, "tail");
        halated(x, y) = (1.0f - fraction) * exposure(x, y) +
                        fraction * (core(x, y) + (tail(x, y) - core(x, y)) * tailShare);
    }

    void schedule() {
        Var block{"block"}, within{"within"};
        halated.split(x, block, within, 64, TailStrategy::RoundUp)
            .reorder(within, y, block)
            .vectorize(within, 8);
        scheduleColumns(core, halated, y);
        scheduleColumns(tail, halated, y);
    }

private:
    Var x{"x"}, y{"y"};
    Func core, tail;
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Halation, halation)
