#pragma once

#include "film/render/Stage.h"

namespace lumisort::film {

/// The density fluctuation of the developed grains. Statistics and amplitudes of the last eight fields and
/// the tables of the last three pictures are kept for the next rendering; safe to call from several threads.
StageRendering prepareGrain(const FilmRecipe& recipe);

/// The parameters within their limits: radii 0.1…40 µm (4 where not finite), variation 0…0.65 (0.35), amount
/// 0…0.3 (0.04), correlation 0…1 (0.35); a monochrome grain has the red radius in all layers.
MaterialGrain validated(const MaterialGrain& grain);

} // namespace lumisort::film
