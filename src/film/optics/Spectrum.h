#pragma once

#include "film/optics/Gaussian.h"
#include "film/optics/SampledSpectrum.h"

#include <variant>

namespace lumisort::film {

/// An assumed spectrum: a Gaussian of height 1, centre and standard deviation in nanometres.
struct GaussianSpectrum {
    double centreNM = 0;
    double sigmaNM = 1;

    double value(double wavelengthNM) const { return gaussian(wavelengthNM, centreNM, sigmaNM); }

    friend bool operator==(const GaussianSpectrum&, const GaussianSpectrum&) = default;
};

/// A spectrum as it was assumed or measured.
using Spectrum = std::variant<GaussianSpectrum, SampledSpectrum>;

inline double value(const Spectrum& spectrum, double wavelengthNM) {
    return std::visit([&](const auto& form) { return form.value(wavelengthNM); }, spectrum);
}

} // namespace lumisort::film
