#include <Halide.h>

namespace lumisort::film::pipelines {

using namespace Halide;

/// Linear display RGB to the integer codes of sRGB (IEC 61966-2-1), with an opaque fourth channel.
class DisplayCodes : public Generator<DisplayCodes> {
public:
    Input<Buffer<float>> light{"light", 3};     ///< x, y, channel
    Input<float> largest{"largest"};            ///< code of white: 255 or 65,535
    Output<Buffer<uint16_t>> codes{"codes", 3}; ///< channel (4), x, y: interleaved

    void generate() {
        const Expr linear = clamp(light(x, y, min(c, 2)), 0.0f, 1.0f);
        const Expr encoded = select(linear <= 0.0031308f, linear * 12.92f,
                                    1.055f * pow(max(linear, 0.0031308f), 1.0f / 2.4f) - 0.055f);
        code(x, y, c) = cast<uint16_t>(encoded * largest + 0.5f);
        codes(c, x, y) = mux(c, {code(x, y, 0), code(x, y, 1), code(x, y, 2), cast<uint16_t>(largest)});
    }

    void schedule() {
        codes.dim(0).set_stride(1).set_bounds(0, 4);
        codes.dim(1).set_stride(4);
        codes.bound(c, 0, 4).reorder(c, x, y).vectorize(x, 8, TailStrategy::RoundUp).unroll(c);
        code.compute_at(codes, x).bound(c, 0, 3).vectorize(x).unroll(c);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
    Func code{"code"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::DisplayCodes, display_codes)
