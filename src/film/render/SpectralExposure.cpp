#include "film/render/SpectralExposure.h"

#include "film/render/Pipeline.h"

#include <spectral_exposure.h>

#include <cmath>

namespace lumisort::film {

StageRendering prepareSpectralExposure(const FilmRecipe& recipe) {
    const auto gain =
        static_cast<float>(std::exp2(recipe.settings.exposure) / recipe.optics->exposure.factor);
    return [optics = recipe.optics, gain](const PlaneView& in, const PlaneView& out, StageScratch&) {
        const auto& cube = optics->exposure.cube;
        auto scene = inputBuffer(in), nodes = tableBuffer(cube.data(), 4), exposure = outputBuffer(out);
        checkPipeline(::spectral_exposure(scene, nodes, cube.dimension(), gain, exposure));
    };
}

} // namespace lumisort::film
