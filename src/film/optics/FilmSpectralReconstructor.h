#pragma once

#include "film/optics/SigmoidKernel.h"
#include "film/optics/Triple.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace lumisort::film {

/// A spectrum that shows a wanted colour: scale · reflectance.
struct FilmReconstructedSpectrum {
    std::vector<double> reflectance; ///< for each wavelength, 0 to 1
    double scale = 0;                ///< 1 for a reflectance under the light that makes white
    double relativeRGBError = 0;     ///< largest channel error over the colour's largest channel
    bool usedFallback = false;
    int iterations = 0;
    bool inputWasClamped = false;

    friend bool operator==(const FilmReconstructedSpectrum&, const FilmReconstructedSpectrum&) = default;
};

/// Finds for a linear RGB colour a smooth reflectance, nowhere below 0 or above 1, that shows it: a
/// sigmoid of a quadratic in wavelength (after Jakob and Hanika, Computer Graphics Forum 38(2), 2019),
/// or, for the colours that none of these can show, a mixture of three smooth bands.
///
/// Constant after construction; any number of threads may ask at once. A colour's result depends on
/// nothing but the colour.
class FilmSpectralReconstructor {
public:
    /// Weights from a reflectance to linear display RGB, the wavelengths in nanometres, and three spectra
    /// whose display colours are (1, 0, 0), (0, 1, 0) and (0, 0, 1). At least three wavelengths, finite, the
    /// first below the last, and lists of one length; anything else stops the program. A negative limit
    /// counts as 0.
    FilmSpectralReconstructor(std::vector<LinearRgb> observerRGBWeights, std::vector<double> wavelengths,
                              std::vector<Vector3> fallbackBasis, int maximumIterations);

    const std::vector<LinearRgb>& observerRGBWeights() const { return observerRGBWeights_; }
    const std::vector<double>& wavelengths() const { return wavelengths_; }
    const std::vector<Vector3>& fallbackBasis() const { return fallbackBasis_; }
    /// The display colour of a perfect white.
    const LinearRgb& whiteRGB() const { return whiteRGB_; }
    int maximumIterations() const { return maximumIterations_; }

    /// Negative, NaN and infinite channels count as 0, those above the largest double / 64 as that.
    FilmReconstructedSpectrum reconstruct(const LinearRgb& rgb) const;

    /// The same for many colours, several at once: calls `finished` with the index and the spectrum of
    /// each, once, in any order. The spectrum is lent for the call.
    void
    reconstruct(std::span<const LinearRgb> colours,
                const std::function<void(std::size_t, const FilmReconstructedSpectrum&)>& finished) const;

private:
    class Job;
    LinearRgb displayRGB(std::span<const double> reflectance) const;

    std::vector<LinearRgb> observerRGBWeights_;
    std::vector<double> wavelengths_;
    std::vector<Vector3> fallbackBasis_;
    SigmoidKernel kernel_;
    LinearRgb whiteRGB_;
    int maximumIterations_ = 0;
};

} // namespace lumisort::film
