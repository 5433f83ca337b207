#pragma once

#include "film/optics/CharacteristicCurve.h"
#include "film/optics/FilmPaper.h"
#include "film/optics/Gaussian.h"

#include <span>

namespace lumisort::film {

/// Everything that sets one paper apart. All numbers are assumed.
struct PaperProfile {
    FilmPaper paper = FilmPaper::glossy;
    SigmoidCurve curve;               ///< print density of every layer against its base-10 log dose
    GaussianTriple dyes;              ///< shares of one absorption
    GaussianTriple sensitivities;     ///< in arbitrary units
    double printingLampKelvin = 3200; ///< colour temperature of the lamp, a black body

    friend bool operator==(const PaperProfile&, const PaperProfile&) = default;
};

/// Every paper in the order of allFilmPapers.
std::span<const PaperProfile> paperProfiles();
const PaperProfile& paperProfile(FilmPaper paper);

} // namespace lumisort::film
