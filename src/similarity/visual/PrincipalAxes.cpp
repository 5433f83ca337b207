#include "similarity/visual/PrincipalAxes.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace lumisort::similarity {
namespace {

constexpr std::size_t mostSamples = 1024; // 2.7 for each of the 384 dimensions
/// Each turn shrinks what is left of the lesser directions by the ratio of the eigenvalues; the axes need not
/// be exact to serve.
constexpr int turns = 4;

using Matrix = std::vector<PrintAxis>;

double product(const PrintAxis& a, const PrintAxis& b) {
    std::array<double, 4> sums{}; // one would wait for its own last addition
    for (std::size_t i = 0; i < a.size(); i += sums.size())
        for (std::size_t j = 0; j < sums.size(); ++j) sums[j] += a[i + j] * b[i + j];
    return sums[0] + sums[1] + (sums[2] + sums[3]);
}

Matrix secondMoments(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                     const std::stop_token& stop) {
    Matrix sum(featurePrintLength, PrintAxis{});
    const std::size_t step = (prints.size() + mostSamples - 1) / mostSamples;
    for (std::size_t i = 0; i < prints.size(); i += step) {
        tasks::checkCancelled(stop);
        PrintAxis values;
        std::ranges::copy(prints[i]->values, values.begin());
        for (std::size_t row = 0; row < values.size(); ++row)
            for (std::size_t column = 0; column <= row; ++column)
                sum[row][column] += values[row] * values[column];
    }
    for (std::size_t row = 0; row < sum.size(); ++row)
        for (std::size_t column = 0; column < row; ++column) sum[column][row] = sum[row][column];
    return sum;
}

/// Gram and Schmidt's method, twice, because once loses orthogonality among nearly parallel axes.
void orthonormalise(Matrix& axes, const std::stop_token& stop) {
    for (std::size_t i = 0; i < axes.size(); ++i) {
        tasks::checkCancelled(stop);
        const double original = std::sqrt(product(axes[i], axes[i]));
        for (int pass = 0; pass < 2; ++pass) {
            for (std::size_t j = 0; j < i; ++j) {
                const double along = product(axes[i], axes[j]);
                for (std::size_t k = 0; k < axes[i].size(); ++k) axes[i][k] -= along * axes[j][k];
            }
        }
        const double length = std::sqrt(product(axes[i], axes[i]));
        // What remains of an axis that the others span is rounding, and points anywhere.
        const double scale = length > 1e-9 * original ? 1 / length : 0;
        for (double& value : axes[i]) value *= scale;
    }
}

} // namespace

std::vector<PrintAxis> principalAxes(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                                     std::size_t count, const std::stop_token& stop) {
    Matrix axes(count, PrintAxis{});
    if (prints.empty()) return axes;
    const Matrix moments = secondMoments(prints, stop);

    std::mt19937 random(1); // the standard fixes its sequence
    for (auto& axis : axes)
        for (double& value : axis) value = static_cast<double>(random()) - 0x1p31;
    Matrix next(count);
    for (int turn = 0; turn < turns; ++turn) {
        for (std::size_t i = 0; i < count; ++i) {
            tasks::checkCancelled(stop);
            for (std::size_t row = 0; row < featurePrintLength; ++row)
                next[i][row] = product(moments[row], axes[i]);
        }
        std::swap(axes, next);
        orthonormalise(axes, stop);
    }
    return axes;
}

} // namespace lumisort::similarity
