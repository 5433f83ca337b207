#pragma once

#include "film/optics/Triple.h"

namespace lumisort::film {

/// A Gaussian of height 1 at `x`; `sigma` is its standard deviation.
double gaussian(double x, double centre, double sigma);

/// One Gaussian band for each of three layers or dyes; centres and standard deviations in nanometres.
struct GaussianTriple {
    Vector3 centresNM;
    Vector3 sigmasNM;

    Vector3 at(double wavelengthNM) const;

    /// The bands as shares of one absorption: they sum to 1 at every wavelength, and `floor` (below 1/3) is
    /// the least share that each band keeps.
    Vector3 sharesAt(double wavelengthNM, double floor = 0) const;

    friend bool operator==(const GaussianTriple&, const GaussianTriple&) = default;
};

} // namespace lumisort::film
