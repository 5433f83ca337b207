#pragma once

#include "film/optics/StockProfile.h"

namespace lumisort::film {

/// The numbers of a stock as they are read off the manufacturer's technical data sheet, with what is assumed
/// where the sheet is silent.
struct DataSheet {
    FilmStock stock;
    std::string id;
    std::string summary; ///< StockProfile::summary
    int isoSpeed;
    std::array<std::string, 3> layerNames;
    /// Characteristic curves: log10 exposures in lux seconds, and each layer's density at them.
    std::vector<double> logExposures;
    std::array<std::vector<double>, 3> densities;
    /// Density of a grey card on the first layer's curve.
    double neutralRedDensity;
    /// Wavelength in nanometres, log10 of the relative sensitivity.
    std::array<std::vector<MaterialPoint>, 3> logSensitivities;
    /// Wavelength in nanometres, density of base, fog and mask together.
    std::vector<MaterialPoint> baseDensities;
    std::array<SampledSpectrum, 3> dyes;
    std::optional<InterlayerCoupling> coupling;
    MaterialGrain grain;
    MaterialHalation halation;
    std::vector<MaterialProvenance> provenance;
};

/// Turns the tables into spectra and curves. Throws MaterialCurveFailure where a table is none.
StockProfile profileOf(const DataSheet& sheet);

} // namespace lumisort::film
