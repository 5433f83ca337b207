#include <Halide.h>

namespace lumisort::film::pipelines {

using namespace Halide;

/// One plane resampled by a separable filter: each output row is a weighted sum of input rows, each output
/// column of input columns. The taps of an output index are those from its `first` on; beyond the plane its
/// edges repeat.
class Reduction : public Generator<Reduction> {
public:
    Input<Buffer<float>> plane{"plane", 2};                  ///< x, y
    Input<Buffer<float>> columnWeights{"column_weights", 2}; ///< output x, tap
    Input<Buffer<int>> firstColumns{"first_columns", 1};     ///< output x
    Input<Buffer<float>> rowWeights{"row_weights", 2};       ///< output y, tap
    Input<Buffer<int>> firstRows{"first_rows", 1};           ///< output y
    Output<Buffer<float>> reduced{"reduced", 2};

    void generate() {
        const RDom rowTap(0, rowWeights.dim(1).extent()), columnTap(0, columnWeights.dim(1).extent());
        const Expr right = plane.dim(0).extent() - 1, bottom = plane.dim(1).extent() - 1;
        column(x, y) = 0.0f;
        column(x, y) += rowWeights(y, rowTap) * plane(x, clamp(firstRows(y) + rowTap, 0, bottom));
        sum(x, y) = 0.0f;
        sum(x, y) += columnWeights(x, columnTap) * column(clamp(firstColumns(x) + columnTap, 0, right), y);
        reduced(x, y) = sum(x, y);
        rowTap_ = rowTap.x;
        columnTap_ = columnTap.x;
    }

    void schedule() {
        Var block{"block"};
        reduced.vectorize(x, 8, TailStrategy::GuardWithIf);
        column.compute_at(reduced, y).vectorize(x, 8, TailStrategy::GuardWithIf);
        column.update().reorder(x, rowTap_).vectorize(x, 8, TailStrategy::GuardWithIf);
        sum.compute_at(reduced, x).vectorize(x, 8);
        sum.update().reorder(x, columnTap_).vectorize(x, 8);
    }

private:
    Var x{"x"}, y{"y"};
    RVar rowTap_, columnTap_;
    Func column{"column"}, sum{"sum"};
};

} // namespace lumisort::film::pipelines

HALIDE_REGISTER_GENERATOR(lumisort::film::pipelines::Reduction, reduction)
