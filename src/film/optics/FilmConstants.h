#pragma once

#include <cstddef>

namespace lumisort::film {

/// The relative exposure of mid-grey, 1 being that of a perfect white.
inline constexpr double midGreyExposure = 0.18;
/// The density of an 18 % reflectance, log10(1 / 0.18).
inline constexpr double midGreyDensity = 0.744727494896694;
/// Exposures at or below this one are taken as this one, so that their logarithm exists.
inline constexpr double smallestExposure = 1e-12;
/// Decades of exposure in one stop, log10(2).
inline constexpr double decadesPerStop = 0.3010299956639812;
/// Densities travel through images and cubes divided by this number, so that 0 to 3.2 fits 0 to 1.
inline constexpr double densityScale = 3.2;

} // namespace lumisort::film
