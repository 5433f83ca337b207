#pragma once

#include "film/optics/FilmSpectralReconstructor.h"
#include "film/optics/PaperProfile.h"
#include "film/optics/SpectralGrid.h"
#include "film/optics/StockProfile.h"

namespace lumisort::film {

/// Everything that the simulation of one film printed on one paper needs in numbers. A value: pure to
/// build (some ten thousand operations), constant afterwards, readable from any thread.
struct FilmSpectralModel {
    FilmSpectralModel(StockProfile stock, PaperProfile paper);
    FilmSpectralModel(FilmStock stock, FilmPaper paper);

    StockProfile stock;
    PaperProfile paper;

    Spectral<Vector3> dyes; ///< absorption of the film's cyan, magenta and yellow dye for a density of 1
    Spectral<Vector3> paperDyes;
    Spectral<double> baseDensities; ///< of the film without any dye
    /// Spectral radiance relative to that of a perfect white under daylight, to layer exposures; each sums
    /// to 1.
    Spectral<Exposure> filmSensitivityWeights;
    /// Share of the printing lamp's light that passes the negative, to what the paper's layers receive; each
    /// sums to 1.
    Spectral<Transmission> paperWeights;
    Spectral<LinearRgb> reflectionWeights; ///< reflectance of the print to display colour; each sums to 1
    Spectral<Vector3>
        reconstructionBasis; ///< spectra whose display colours are (1, 0, 0), (0, 1, 0), (0, 0, 1)
    ColourMatrix<Exposure, LinearRgb>
        exposureRows;                 ///< layer exposures as a linear function of the input's colour
    Transmission neutralTransmission; ///< through the negative of mid-grey
    double paperCalibration = 0;      ///< log10 dose that prints as 18 % reflectance

    /// What a spectrum exposes; the same in all layers of a panchromatic film.
    Exposure exposure(const FilmReconstructedSpectrum& spectrum) const;

    /// Develops relative exposures. An exposure at or below 1e-12, or NaN, develops like
    /// 1e-12. Densities count from the film's base; a sigmoid curve's own minimum is part of them.
    Density layerDensity(const Exposure& exposures) const;

    /// The least developed density of each layer, and how far the largest exceeds it.
    Density layerMinimums() const;
    Density layerRanges() const;

    /// The light that the paper's layers receive through a negative of these densities.
    Transmission seenThroughNegative(const Density& densities) const;

    /// The base-10 log dose of each paper layer less the negative's density (log10 of 1 / transmission) in
    /// its channel: with it, the negative of mid-grey prints as 18 % reflectance at 0 stops of print
    /// exposure.
    Vector3 printCalibration(double printExposureStops) const;

    /// Bounds of the display colour of any reflectance between 0 and 1: from the minimum to minimum + range.
    LinearRgb reflectionCubeMinimums() const;
    LinearRgb reflectionCubeRanges() const;

    /// Finds spectra for colours, seen through reflectionWeights.
    FilmSpectralReconstructor reconstructor() const;
};

} // namespace lumisort::film
