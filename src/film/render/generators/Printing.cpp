#include <Halide.h>

namespace lumisort::film::pipelines {

using namespace Halide;

/// The densities that the paper's dyes develop below a negative, over the density scale, through the paper's
/// sigmoid curve over the log dose.
class Printing : public Generator<Printing> {
public:
    Input<Buffer<float>> negative{"negative", 3};       ///< x, y, channel; over the density scale
    Input<Buffer<float>> calibration{"calibration", 1}; ///< log dose of each channel through no negative
    Input<float> floor{"floor"};                        ///< least density
    Input<float> range{"range"};
    Input<float> slope{"slope"};
    Input<float> scale{"scale"}; ///< the density scale
    Output<Buffer<float>> print{"print", 3};

    void generate() {
        const Expr logDose = calibration(c) - negative(x, y, c) * scale;
        const Expr density = floor + range / (1.0f + exp(-slope * logDose));
        print(x, y, c) = clamp(density / scale, 0.0f, 1.0f);
    }

    void schedule() { print.bound(c, 0, 3).reorder(x, y, c).vectorize(x, 8, TailStrategy::RoundUp); }

private:
    Var x{"x"}, y{"y"}, c{"c"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Printing, printing)
