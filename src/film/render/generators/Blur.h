#pragma once

#include <Halide.h>

namespace lumisort::film::pipelines {

/// A column of a separable blur: each pixel is the sum of 2 · radius + 1 pixels above and below it, weighed
/// by `weights`; rows beyond the image repeat its first and last.
inline Halide::Func blurredColumns(Halide::Func rows, const Halide::Expr& top, const Halide::Expr& height,
                                   Halide::Func weights, const Halide::Expr& radius,
                                   const std::string& name) {
    using namespace Halide;
    Var x, y;
    Func blurred(name);
    const RDom tap(0, 2 * radius + 1);
    blurred(x, y) = 0.0f;
    blurred(x, y) += weights(tap) * rows(x, clamp(y + tap - radius, top, top + height - 1));
    return blurred;
}

/// Keeps the sums of a blur in registers for all taps. `at` vectorizes a block of columns inside `loop`.
inline void scheduleColumns(Halide::Func blurred, Halide::Func at, const Halide::Var& loop) {
    const Halide::Var x = blurred.args()[0];
    const Halide::RVar tap = blurred.rvars(0)[0];
    blurred.compute_at(at, loop).vectorize(x, 8).unroll(x);
    blurred.update().reorder(x, tap).vectorize(x, 8).unroll(x);
}

} // namespace lumisort::film::pipelines
