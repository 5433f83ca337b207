#pragma once

#include "film/optics/FilmPaper.h"
#include "film/optics/FilmStock.h"

#include <string>

namespace lumisort::film {

/// The numbers of the model as a JSON object with the keys stock, paper, neutralLogExposure (only with a
/// measured profile), paperCalibration, neutralTransmission, exposureRows, layerRanges,
/// reflectionCubeMinimums, reflectionCubeRanges and greyScale. Every number reads back exactly. UTF-8, ends
/// with a line break.
std::string inspectJson(FilmStock stock, FilmPaper paper);

/// The same for people, with units and, where the film was measured, where its numbers come from.
std::string inspectText(FilmStock stock, FilmPaper paper);

} // namespace lumisort::film
