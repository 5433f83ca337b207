#include <Halide.h>

namespace lumisort::film::pipelines {

using namespace Halide;

/// Developed densities with grain. The noise of a layer is a sum of plane waves A cos(ax + by) + B sin(ax +
/// by), which splits into a product of tables over columns, cos(ax) and sin(ax), and factors of the row: 2 ·
/// waves terms. Where `layers` is 1, all film layers share the first field.
class Grain : public Generator<Grain> {
public:
    Input<Buffer<float>> density{"density", 3};     ///< x, y, layer; over the density scale
    Input<Buffer<float>> columns{"columns", 3};     ///< x, term, layer
    Input<Buffer<float>> rows{"rows", 3};           ///< term, y, layer
    Input<Buffer<float>> deviation{"deviation", 2}; ///< level, layer: deviation of density
    Input<Buffer<float>> bounds{"bounds", 2};       ///< layer, 2: least and most density of the film
    Input<float> amount{"amount"};                  ///< of the grain
    Input<float> scale{"scale"};                    ///< the density scale
    Output<Buffer<float>> grained{"grained", 3};

    void generate() {
        const Expr terms = columns.dim(1).extent(), levels = deviation.dim(0).extent();
        const Expr layers = columns.dim(2).extent();
        const RDom term(0, terms);
        noise(x, y, c) = 0.0f;
        noise(x, y, c) += columns(x, term, c) * rows(term, y, c);
        term_ = term.x;

        const Expr position = clamp(density(x, y, c), 0.0f, 1.0f) * cast<float>(levels - 1);
        const Expr low = clamp(cast<int>(position), 0, levels - 2);
        const Expr strength =
            deviation(low, c) + (deviation(low + 1, c) - deviation(low, c)) * (position - cast<float>(low));
        const Expr real = density(x, y, c) * scale;
        // A change is limited by the distance to the nearer bound on either side: limited on one side alone
        // it would shift the mean near the toe and the shoulder.
        const Expr room = max(min(real - bounds(c, 0), bounds(c, 1) - real), 0.0f);
        const Expr change = clamp(noise(x, y, min(c, layers - 1)) * strength * amount, -room, room);
        grained(x, y, c) = (real + change) / scale;
    }

    void schedule() {
        Var block{"block"}, within{"within"}, group{"group"}, row{"row"};
        grained.bound(c, 0, 3)
            .split(x, block, within, 16, TailStrategy::RoundUp)
            .split(y, group, row, 4, TailStrategy::RoundUp)
            .reorder(within, row, c, block, group)
            .unroll(c)
            .vectorize(within, 8);
        noise.compute_at(grained, block).vectorize(x, 8).unroll(x).unroll(y);
        noise.update().reorder(x, y, term_, c).vectorize(x, 8).unroll(x).unroll(y);
    }

private:
    Var x{"x"}, y{"y"}, c{"c"};
    RVar term_;
    Func noise{"noise"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Grain, grain)
