#pragma once

#include "film/optics/FilmMaterialProfile.h"
#include "film/optics/FilmPaper.h"
#include "film/optics/FilmSpectralReconstructor.h"
#include "film/optics/FilmStock.h"
#include "film/optics/SpectralGrid.h"
#include "film/optics/Vector3.h"

#include <array>

namespace lumisort::film {

/// Everything that the simulation of one film printed on one paper needs in numbers. A value: pure to
/// build (some ten thousand operations), constant afterwards, readable from any thread.
///
/// Exposures are relative: 1 is that of a perfect white, 0.18 mid-grey.
struct FilmSpectralModel {
    FilmSpectralModel(FilmStock stock, FilmPaper paper);

    FilmStock stock;
    FilmPaper paper;
    /// The measured profile, which lives as long as the program; null for stocks without one.
    const FilmMaterialProfile* material;

    double filmMinimum; ///< of the curve of a stock without a profile
    double filmRange;
    double filmSlope;
    double paperMinimum;
    double paperRange;
    double paperSlope;
    /// Offset of the log dose that prints the neutral negative as 18 % reflectance.
    double paperCalibration;
    double grainDensity; ///< grain strength of a stock without a profile

    /// The exposure of each film layer as a linear function of the input's linear RGB.
    std::array<Vector3, 3> exposureRows;

    Spectral<Vector3> dyes; ///< absorption of the film's cyan, magenta and yellow dye
    Spectral<Vector3> paperDyes;
    Spectral<double> baseDensities;           ///< of the film without any dye
    Spectral<Vector3> filmSensitivityWeights; ///< light from a scene to layer exposures; each sums to 1
    Spectral<Vector3> reconstructionBasis;    ///< spectra whose display RGB is the identity
    Spectral<Vector3> paperWeights;           ///< light from the lamp to paper exposures; each sums to 1
    Spectral<Vector3> reflectionWeights;      ///< reflectance to linear display RGB; each sums to 1
    /// What each paper channel sees of the lamp through the neutrally exposed negative.
    Vector3 neutralTransmission;

    /// Relative exposures to developed densities above base. An exposure at or below 1e-12, or one that
    /// is no number, develops like 1e-12.
    Vector3 layerDensity(const Vector3& exposures) const;

    /// The largest developed density above base of each layer (without a profile: of its curve).
    Vector3 layerRanges() const;

    /// Bounds of the display value of any reflectance between 0 and 1: from the minimum to minimum + range.
    Vector3 reflectionCubeMinimums() const;
    Vector3 reflectionCubeRanges() const;

    /// Finds spectra for colours, seen through reflectionWeights.
    FilmSpectralReconstructor reconstructor() const;
};

} // namespace lumisort::film
