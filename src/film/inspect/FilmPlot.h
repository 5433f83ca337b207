#pragma once

#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"

#include <string>

namespace lumisort::film {

/// A drawing (SVG, UTF-8): the film's sensitivities, characteristic curves, dyes and base, and below them
/// what the paper sees, its curve and its dyes.
std::string plotSvg(FilmStock stock, FilmPaper paper);

} // namespace lumisort::film
