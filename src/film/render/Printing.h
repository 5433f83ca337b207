#pragma once

#include "film/render/Stage.h"

namespace lumisort::film {

/// The last stages: film dye densities to what the paper sees, to paper dye densities, to linear display RGB.
StageRendering prepareNegative(const FilmRecipe& recipe);
StageRendering preparePrinting(const FilmRecipe& recipe);
StageRendering preparePaperLight(const FilmRecipe& recipe);

} // namespace lumisort::film
