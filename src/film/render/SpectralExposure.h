#pragma once

#include "film/render/Stage.h"

namespace lumisort::film {

/// Scene-linear RGB to the relative exposures of the film's layers.
StageRendering prepareSpectralExposure(const FilmRecipe& recipe);

} // namespace lumisort::film
