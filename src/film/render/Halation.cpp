#include "film/render/Halation.h"

#include "film/render/GaussianKernel.h"
#include "film/render/Pipeline.h"

#include <blur_rows.h>
#include <halation.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace lumisort::film {

namespace {

/// What one layer scatters.
struct LayerHalation {
    GaussianKernel core;
    GaussianKernel tail;
    float fraction;
    float tailWeight;
};

MaterialHalation halationOf(const FilmRecipe& recipe) {
    return validated(recipe.optics->model.stock.halation);
}

std::vector<LayerHalation> layersOf(const FilmRecipe& recipe) {
    const auto halation = halationOf(recipe);
    const double scale = recipe.pixelsPerMicrometre();
    std::vector<LayerHalation> layers;
    for (std::size_t layer = 0; layer < 3; ++layer)
        layers.push_back({
            .core = GaussianKernel(scale * halation.coreSigmaMicrometres[layer]),
            .tail = GaussianKernel(scale * halation.tailSigmaMicrometres[layer]),
            .fraction = static_cast<float>(recipe.settings.halation * halation.scatteringFraction[layer]),
            .tailWeight = static_cast<float>(halation.tailWeight[layer]),
        });
    return layers;
}

bool scatters(const FilmRecipe& recipe) {
    return recipe.settings.halation > 0 && largest(halationOf(recipe).scatteringFraction) > 0;
}

void blurRows(const PlaneView& in, int layer, const GaussianKernel& kernel, const PlaneView& out) {
    auto plane = inputPlane(in, layer), weights = tableBuffer(kernel.weights), blurred = outputPlane(out, 0);
    checkPipeline(::blur_rows(plane, weights, kernel.radius, in.region.x, in.region.width, blurred));
}

} // namespace

MaterialHalation validated(const MaterialHalation& halation) {
    MaterialHalation valid = halation;
    for (std::size_t layer = 0; layer < 3; ++layer) {
        auto& fraction = valid.scatteringFraction[layer];
        auto& core = valid.coreSigmaMicrometres[layer];
        auto& tail = valid.tailSigmaMicrometres[layer];
        auto& weight = valid.tailWeight[layer];
        fraction = std::isfinite(fraction) ? std::clamp(fraction, 0.0, 0.5) : 0;
        core = std::isfinite(core) ? std::clamp(core, 0.1, 150.0) : 8;
        tail = std::min(std::max(std::isfinite(tail) ? tail : 35, core), 500.0);
        weight = std::isfinite(weight) ? std::clamp(weight, 0.0, 1.0) : 0.2;
    }
    return valid;
}

int halationBorder(const FilmRecipe& recipe) {
    if (!scatters(recipe)) return 0;
    const double widest = largest(halationOf(recipe).tailSigmaMicrometres);
    return GaussianKernel(recipe.pixelsPerMicrometre() * widest).radius;
}

StageRendering prepareHalation(const FilmRecipe& recipe) {
    if (!scatters(recipe)) return {};
    return [layers = layersOf(recipe)](const PlaneView& in, const PlaneView& out, StageScratch& scratch) {
        const Rectangle rows{out.region.x, in.region.y, out.region.width, in.region.height};
        auto& [core, tail, unused] = scratch.planes;
        core.reshape(rows);
        tail.reshape(rows);
        for (int i = 0; i < 3; ++i) {
            const auto& layer = layers[static_cast<std::size_t>(i)];
            blurRows(in, i, layer.core, core.view());
            blurRows(in, i, layer.tail, tail.view());
            auto exposure = inputPlane(in, i), coreRows = inputPlane(core.view(), 0),
                 tailRows = inputPlane(tail.view(), 0), coreWeights = tableBuffer(layer.core.weights),
                 tailWeights = tableBuffer(layer.tail.weights), halated = outputPlane(out, i);
            checkPipeline(::halation(exposure, coreRows, tailRows, coreWeights, layer.core.radius,
                                     tailWeights, layer.tail.radius, rows.y, rows.height, layer.fraction,
                                     layer.tailWeight, halated));
        }
    };
}

} // namespace lumisort::film
