#pragma once

#include "film/optics/SigmoidKernel.h"
#include "film/optics/Vector3.h"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace lumisort::film {

/// A spectrum that shows a wanted colour: scale · reflectance.
struct FilmReconstructedSpectrum {
    std::vector<double> reflectance; ///< for each wavelength, 0 to 1
    double scale = 0;
    double relativeRGBError = 0; ///< largest channel error over the colour's largest channel
    bool usedFallback = false;
    int iterations = 0;
    bool inputWasClamped = false;

    friend bool operator==(const FilmReconstructedSpectrum&, const FilmReconstructedSpectrum&) = default;
};

/// Finds for a linear RGB colour a smooth reflectance, nowhere below 0 or above 1, that shows it: a
/// sigmoid of a quadratic in wavelength (after Jakob and Hanika, Computer Graphics Forum 38(2), 2019),
/// or, for the colours that none of these can show, a mixture of three lobes.
///
/// Constant after construction; any number of threads may ask at once. A colour's result depends on
/// nothing but the colour.
class FilmSpectralReconstructor {
public:
    /// Weights from a reflectance to linear display RGB, the wavelengths in nanometres, and three spectra
    /// whose display RGB is the identity. At least three wavelengths, finite, the first below the last,
    /// and lists of one length; anything else stops the program. A negative limit counts as 0.
    FilmSpectralReconstructor(std::vector<Vector3> observerRGBWeights, std::vector<double> wavelengths,
                              std::vector<Vector3> fallbackBasis, int maximumIterations);

    const std::vector<Vector3>& observerRGBWeights() const { return observerRGBWeights_; }
    const std::vector<double>& wavelengths() const { return wavelengths_; }
    const std::vector<Vector3>& fallbackBasis() const { return fallbackBasis_; }
    /// (t², t, 1) for each wavelength, t from -1 at the first to 1 at the last.
    const std::vector<Vector3>& smoothBasis() const { return smoothBasis_; }
    /// The display RGB of a perfect white.
    const Vector3& whiteRGB() const { return whiteRGB_; }
    int maximumIterations() const { return maximumIterations_; }

    /// Negative, NaN and infinite channels count as 0, those above the largest double / 64 as that.
    FilmReconstructedSpectrum reconstruct(const Vector3& rgb) const;

    /// The same for many colours, several at once: calls `finished` with the index and the spectrum of
    /// each, once, in any order. The spectrum is lent for the call.
    void
    reconstruct(std::span<const Vector3> colours,
                const std::function<void(std::size_t, const FilmReconstructedSpectrum&)>& finished) const;

private:
    class Job;
    /// The lists agree and the wavelengths rise; gives t for each.
    static std::vector<double> positions(std::span<const Vector3> weights,
                                         std::span<const double> wavelengths,
                                         std::span<const Vector3> fallbackBasis);
    Vector3 displayRGB(std::span<const double> reflectance) const;

    std::vector<Vector3> observerRGBWeights_;
    std::vector<double> wavelengths_;
    std::vector<Vector3> fallbackBasis_;
    SigmoidKernel kernel_;
    std::vector<Vector3> smoothBasis_;
    Vector3 whiteRGB_;
    int maximumIterations_;
};

} // namespace lumisort::film
