#pragma once

#include "film/optics/MonotoneCurve.h"

#include <variant>

namespace lumisort::film {

/// An assumed characteristic curve: density = minimum + range / (1 + exp(-slope · L)) over the base-10 log
/// exposure L, with its middle at L = 0.
struct SigmoidCurve {
    double minimum = 0; ///< density far below the middle
    double range = 1;   ///< density between the two ends
    double slope =
        1; ///< steepness, natural units per decade; the gradient in the middle is range · slope / 4

    double density(double logExposure) const;
    /// The log exposure that develops to a density between the two ends; infinite at an end, NaN beyond.
    double logExposure(double density) const;

    friend bool operator==(const SigmoidCurve&, const SigmoidCurve&) = default;
};

/// How a layer's density follows from its base-10 log exposure, as it was assumed or measured.
using CharacteristicCurve = std::variant<SigmoidCurve, MonotoneCurve>;

double density(const CharacteristicCurve& curve, double logExposure);
double logExposure(const CharacteristicCurve& curve, double density);
/// The density of no exposure.
double lowestDensity(const CharacteristicCurve& curve);
/// The highest density less the lowest.
double densityRange(const CharacteristicCurve& curve);

} // namespace lumisort::film
