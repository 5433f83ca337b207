#include "film/render/PreviewStages.h"

namespace lumisort::film {

images::LinearImage PreviewStages::render(const FilmRecipe& recipe, const images::LinearImage& scene,
                                          const ParallelFor& parallelFor, StageTimes* times,
                                          const std::stop_token& stop) {
    const Kept* from = nullptr;
    const auto renderTo = [&](std::size_t last, const std::function<void(const PlaneView&)>& take) {
        const FilmChain chain(recipe, from ? from->stages : 0, last);
        if (from) {
            renderTiles(chain, from->planes, recipe.picture(), parallelFor, take, times, stop);
        } else {
            renderTiles(chain, scene, recipe.picture(), parallelFor, take, times, stop);
        }
    };
    for (auto& kept : kept_) {
        const auto settings = settingsRead(recipe.settings, kept.stages);
        if (!kept.valid || kept.settings != settings || kept.grainSeed != recipe.grainSeed) {
            kept.valid = false;
            kept.planes.reshape(recipe.picture());
            renderTo(kept.stages,
                     [&](const PlaneView& tile) { copyRegion(tile, kept.planes.view().part(tile.region)); });
            kept.settings = settings;
            kept.grainSeed = recipe.grainSeed;
            kept.valid = true;
        }
        from = &kept;
    }
    images::LinearImage result(recipe.width, recipe.height);
    renderTo(filmStages().size(), [&](const PlaneView& tile) { copyRegion(tile, result); });
    return result;
}

void PreviewStages::forget() {
    for (auto& kept : kept_) {
        kept.valid = false;
        kept.planes = Planes();
    }
}

} // namespace lumisort::film
