#include <Halide.h>

namespace lumisort::film::pipelines {

using namespace Halide;

/// The horizontal half of a separable blur of one plane: each pixel is the sum of 2 · radius + 1 pixels left
/// and right of it, weighed by `weights`; columns beyond [left, left + width) repeat the first and last of
/// them.
class BlurRows : public Generator<BlurRows> {
public:
    Input<Buffer<float>> plane{"plane", 2};     ///< x, y
    Input<Buffer<float>> weights{"weights", 1}; ///< 2 · radius + 1
    Input<int> radius{"radius"};
    Input<int> left{"left"};
    Input<int> width{"width"};
    Output<Buffer<float>> blurred{"blurred", 2}; ///< x, y

    void generate() {
        extended(x, y) = plane(clamp(x, left, left + width - 1), y);
        const RDom tap(0, 2 * radius + 1);
        sum(x, y) = 0.0f;
        sum(x, y) += weights(tap) * extended(x + tap - radius, y);
        blurred(x, y) = sum(x, y);
        tap_ = tap.x;
    }

    void schedule() {
        Var block{"block"}, within{"within"};
        blurred.split(x, block, within, 64, TailStrategy::RoundUp).vectorize(within, 8);
        extended.compute_at(blurred, y).vectorize(x, 8);
        sum.compute_at(blurred, block).vectorize(x, 8).unroll(x);
        sum.update().reorder(x, tap_).vectorize(x, 8).unroll(x);
    }

private:
    Var x{"x"}, y{"y"};
    RVar tap_;
    Func extended{"extended"}, sum{"sum"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::BlurRows, blur_rows)
