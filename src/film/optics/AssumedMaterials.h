#pragma once

#include "film/optics/StockProfile.h"

namespace lumisort::film {

// What no data sheet tells, assumed alike for every stock.

/// Dye absorptions that share the light: GaussianTriple::sharesAt on the spectral grid, nothing beyond it.
std::array<SampledSpectrum, 3> assumedDyes(const GaussianTriple& dyes, double floor);

MaterialHalation assumedHalation(MaterialProvenance provenance);

/// Between the layers of a colour film.
InterlayerCoupling assumedCoupling();

/// Share of each grain wave's amplitude that all layers of a film have in common.
inline constexpr double assumedGrainCorrelation = 0.35;
/// Standard deviation of the grain radii over their mean.
inline constexpr double assumedGrainVariation = 0.35;

} // namespace lumisort::film
