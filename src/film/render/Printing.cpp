#include "film/render/Printing.h"

#include "film/optics/FilmConstants.h"
#include "film/render/Pipeline.h"

#include <negative.h>
#include <paper_light.h>
#include <printing.h>

#include <array>

namespace lumisort::film {

StageRendering prepareNegative(const FilmRecipe& recipe) {
    return [optics = recipe.optics](const PlaneView& in, const PlaneView& out, StageScratch&) {
        const auto& cube = optics->negative.cube;
        auto density = inputBuffer(in), nodes = tableBuffer(cube.data(), 4), negative = outputBuffer(out);
        checkPipeline(::negative(density, nodes, cube.dimension(), negative));
    };
}

StageRendering preparePrinting(const FilmRecipe& recipe) {
    const auto& model = recipe.optics->model;
    const auto calibration = model.printCalibration(recipe.settings.printExposure);
    std::array<float, 3> doses{};
    for (std::size_t c = 0; c < 3; ++c) doses[c] = static_cast<float>(calibration[c]);
    return [doses, curve = model.paper.curve](const PlaneView& in, const PlaneView& out, StageScratch&) {
        auto negative = inputBuffer(in), dose = tableBuffer(doses), print = outputBuffer(out);
        checkPipeline(::printing(negative, dose, static_cast<float>(curve.minimum),
                                 static_cast<float>(curve.range), static_cast<float>(curve.slope),
                                 static_cast<float>(densityScale), print));
    };
}

StageRendering preparePaperLight(const FilmRecipe& recipe) {
    const auto minimums = recipe.optics->paper.minimums;
    const auto ranges = recipe.optics->paper.ranges;
    std::array<float, 6> bounds{};
    for (std::size_t c = 0; c < 3; ++c) {
        bounds[c] = static_cast<float>(minimums[c]);
        bounds[3 + c] = static_cast<float>(ranges[c]);
    }
    return [optics = recipe.optics, bounds](const PlaneView& in, const PlaneView& out, StageScratch&) {
        const auto& cube = optics->paper.cube;
        auto print = inputBuffer(in), nodes = tableBuffer(cube.data(), 4), limits = tableBuffer(bounds, 3),
             light = outputBuffer(out);
        checkPipeline(::paper_light(print, nodes, cube.dimension(), limits, light));
    };
}

} // namespace lumisort::film
