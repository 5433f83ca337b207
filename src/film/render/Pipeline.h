#pragma once

#include "film/render/Planes.h"

#include <HalideBuffer.h>

#include <span>

namespace lumisort::film {

/// The views of images and tables that generated pipelines take.
using PipelineBuffer = Halide::Runtime::Buffer<float>;

/// Three planes to read, (x, y, channel) in the picture's coordinates, slack included.
PipelineBuffer inputBuffer(const PlaneView& planes);
/// Three planes to write; their columns are rounded up to whole vectors and blocks, the rows to
/// `rowMultiple`.
PipelineBuffer outputBuffer(const PlaneView& planes, int rowMultiple = 1);
/// One plane of either, (x, y).
PipelineBuffer inputPlane(const PlaneView& planes, int channel);
PipelineBuffer outputPlane(const PlaneView& planes, int channel);

/// A table whose first index runs fastest, over `inner` numbers; the second over the rest.
PipelineBuffer tableBuffer(std::span<const float> table, int inner);
/// The same with a third index over the rest.
PipelineBuffer tableBuffer(std::span<const float> table, int inner, int middle);
/// A table of one dimension.
PipelineBuffer tableBuffer(std::span<const float> table);

/// Takes what a generated pipeline returned: anything but 0 throws FilmRenderError (unavailable).
void checkPipeline(int status);

} // namespace lumisort::film
