#pragma once

#include "film/render/Stage.h"

namespace lumisort::film {

/// Layer exposures to developed densities over densityScale, with inter-layer inhibition where the settings
/// ask for colour separation and the stock has more than one layer. Border in pixels.
int developmentBorder(const FilmRecipe& recipe);
StageRendering prepareDevelopment(const FilmRecipe& recipe);

} // namespace lumisort::film
