#pragma once

#include "film/render/Stage.h"

namespace lumisort::film {

/// Light that the film's base returns into the layers round bright places. Borders in pixels.
int halationBorder(const FilmRecipe& recipe);
StageRendering prepareHalation(const FilmRecipe& recipe);

/// The parameters within their limits: fractions 0…0.5, core 0.1…150 µm, tail from the core to 500 µm, weight
/// 0…1; where not finite: 0, 8 µm, the larger of 35 µm and the core, and 0.2.
MaterialHalation validated(const MaterialHalation& halation);

} // namespace lumisort::film
