#include "film/render/Reduction.h"

#include "film/render/Pipeline.h"

#include <reduction.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumisort::film {

namespace {

/// Output rows that one job reduces.
constexpr int rowsAtOnce = 32;

double lanczos(double x) {
    constexpr int lobes = 3;
    if (std::abs(x) < 1e-9) return 1;
    if (std::abs(x) >= lobes) return 0;
    const double t = std::numbers::pi * x;
    return lobes * std::sin(t) * std::sin(t / lobes) / (t * t);
}

/// What an input pixel of this width shares with an output pixel of width 1.
double sharedArea(double distance, double width) {
    return std::clamp((1 + width) / 2 - std::abs(distance), 0.0, width);
}

double weightOf(ReductionFilter filter, double distance, double scale) {
    return filter == ReductionFilter::lanczos ? lanczos(distance) : sharedArea(distance, scale);
}

/// How far from its middle an output pixel sees input pixels, in output pixels.
double reachOf(ReductionFilter filter, double scale) {
    return filter == ReductionFilter::lanczos ? 3 : (1 + scale) / 2;
}

/// The weights of one axis, [tap][output], and the input index of each output's first tap.
struct Taps {
    Taps(int outputCount, double scale, ReductionFilter filter)
        : count(static_cast<int>(std::ceil(2 * reachOf(filter, scale) / scale)) + 1),
          outputs((outputCount + 7) / 8 * 8) {
        weights.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(outputs));
        for (int i = 0; i < outputs; ++i) {
            const double centre = (i + 0.5) / scale - 0.5;
            const int start = static_cast<int>(std::floor(centre - reachOf(filter, scale) / scale)) + 1;
            first.push_back(start);
            double sum = 0;
            for (int tap = 0; tap < count; ++tap)
                sum += weightOf(filter, (start + tap - centre) * scale, scale);
            for (int tap = 0; tap < count; ++tap)
                weights[static_cast<std::size_t>(tap * outputs + i)] =
                    static_cast<float>(weightOf(filter, (start + tap - centre) * scale, scale) / sum);
        }
    }

    int count;
    int outputs; ///< rounded up to whole vectors
    std::vector<float> weights;
    std::vector<int> first;
};

PipelineBuffer planeOf(images::View<const float> plane) {
    const halide_dimension_t shape[] = {{0, plane.width, 1},
                                        {0, plane.height, static_cast<int>(plane.stride)}};
    return PipelineBuffer(const_cast<float*>(plane.data), 2, shape);
}

} // namespace

images::LinearImage reduced(const images::LinearImage& image, int longEdge, ReductionFilter filter,
                            const ParallelFor& parallelFor, const std::stop_token& stop) {
    const double scale = static_cast<double>(longEdge) / std::max(image.width(), image.height());
    const auto scaled = [scale](int side) { return std::max(1, static_cast<int>(scale * side + 1e-9)); };
    images::LinearImage result(scaled(image.width()), scaled(image.height()));
    Taps columns(result.width(), scale, filter), rows(result.height(), scale, filter);
    const int blocks = (result.height() + rowsAtOnce - 1) / rowsAtOnce;
    parallelFor(
        static_cast<std::size_t>(3 * blocks),
        [&](std::size_t index) {
            const int channel = static_cast<int>(index) % 3, top = static_cast<int>(index) / 3 * rowsAtOnce;
            const int height = std::min(rowsAtOnce, result.height() - top);
            auto input = planeOf(image.plane(channel));
            auto columnWeights = tableBuffer(columns.weights, columns.outputs);
            auto rowWeights = tableBuffer(rows.weights, rows.outputs);
            Halide::Runtime::Buffer<int> firstColumns(columns.first.data(), columns.outputs);
            Halide::Runtime::Buffer<int> firstRows(rows.first.data(), rows.outputs);
            const auto out = result.plane(channel);
            const halide_dimension_t shape[] = {{0, out.width, 1},
                                                {top, height, static_cast<int>(out.stride)}};
            PipelineBuffer output(out.row(top), 2, shape);
            checkPipeline(::reduction(input, columnWeights, firstColumns, rowWeights, firstRows, output));
        },
        stop);
    return result;
}

} // namespace lumisort::film
