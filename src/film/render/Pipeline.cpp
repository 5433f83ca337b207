#include "film/render/Pipeline.h"

#include "film/render/FilmRenderError.h"

#include <HalideRuntime.h>

namespace lumisort::film {

namespace {

/// Halide's own handler ends the program; the pipeline's status says the same to the caller.
const bool handlerInstalled = [] {
    halide_set_error_handler([](void*, const char*) {});
    return true;
}();

/// Columns that every pipeline writes in whole blocks of this many.
constexpr int columnBlock = 64;
static_assert(columnBlock <= PlaneView::columnSlack);

PipelineBuffer buffer(const PlaneView& planes, int columns, int rows) {
    const halide_dimension_t shape[] = {
        {planes.region.x, columns, 1},
        {planes.region.y, rows, static_cast<int>(planes.stride)},
        {0, 3, static_cast<int>(planes.planeStride)},
    };
    return PipelineBuffer(planes.data, 3, shape);
}

int roundedUp(int value, int multiple) {
    return (value + multiple - 1) / multiple * multiple;
}

} // namespace

PipelineBuffer inputBuffer(const PlaneView& planes) {
    return buffer(planes, planes.region.width + PlaneView::columnSlack,
                  planes.region.height + PlaneView::rowSlack);
}

PipelineBuffer outputBuffer(const PlaneView& planes, int rowMultiple) {
    return buffer(planes, roundedUp(planes.region.width, columnBlock),
                  roundedUp(planes.region.height, rowMultiple));
}

PipelineBuffer inputPlane(const PlaneView& planes, int channel) {
    return inputBuffer(planes).sliced(2, channel);
}

PipelineBuffer outputPlane(const PlaneView& planes, int channel) {
    return outputBuffer(planes).sliced(2, channel);
}

PipelineBuffer tableBuffer(std::span<const float> table, int inner) {
    const halide_dimension_t shape[] = {{0, inner, 1}, {0, static_cast<int>(table.size()) / inner, inner}};
    return PipelineBuffer(const_cast<float*>(table.data()), 2, shape);
}

PipelineBuffer tableBuffer(std::span<const float> table, int inner, int middle) {
    const auto size =
        static_cast<int>(table.size() / static_cast<std::size_t>(inner) / static_cast<std::size_t>(middle));
    const halide_dimension_t shape[] = {{0, inner, 1}, {0, middle, inner}, {0, size, inner * middle}};
    return PipelineBuffer(const_cast<float*>(table.data()), 3, shape);
}

PipelineBuffer tableBuffer(std::span<const float> table) {
    const halide_dimension_t shape[] = {{0, static_cast<int>(table.size()), 1}};
    return PipelineBuffer(const_cast<float*>(table.data()), 1, shape);
}

void checkPipeline(int status) {
    if (status != 0 || !handlerInstalled) throw FilmRenderError(FilmRenderProblem::unavailable);
}

} // namespace lumisort::film
