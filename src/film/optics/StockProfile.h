#pragma once

#include "film/optics/CharacteristicCurve.h"
#include "film/optics/FilmStock.h"
#include "film/optics/MaterialProvenance.h"
#include "film/optics/Matrix3.h"
#include "film/optics/Spectrum.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace lumisort::film {

/// The grain of a stock.
struct MaterialGrain {
    Vector3 meanRadiusMicrometres;           ///< of each layer's grains on the film
    double radiusCoefficientOfVariation = 0; ///< standard deviation of the radii over their mean
    /// Standard deviation of density (log10) at full strength, where half of the film is covered and a pixel
    /// is far smaller than a grain.
    double densityAmount = 0;
    double correlation = 0;    ///< share of each wave's amplitude that all layers have in common, 0…1
    bool isMonochrome = false; ///< all layers share one grain field
    MaterialProvenance provenance;

    friend bool operator==(const MaterialGrain&, const MaterialGrain&) = default;
};

/// Light that the film's back returns into its layers: a narrow core and a wide tail, both Gaussian.
struct MaterialHalation {
    Vector3 scatteringFraction;   ///< share of each layer's exposure that is scattered, 0…1
    Vector3 coreSigmaMicrometres; ///< standard deviation on the film
    Vector3 tailSigmaMicrometres; ///< standard deviation on the film
    Vector3 tailWeight;           ///< share of the scattered light that goes into the tail, 0…1
    MaterialProvenance provenance;

    friend bool operator==(const MaterialHalation&, const MaterialHalation&) = default;
};

/// Developed layers inhibit each other. A layer's density beyond that of the neutral grey of the same mean
/// log exposure diffuses through the film and lowers the log10 exposure of the other layers.
struct InterlayerCoupling {
    /// Row: the inhibited layer; column: the layer whose excess density (log10) inhibits it. In decades of
    /// exposure per unit of density, at full colour separation.
    Matrix3 inhibition;
    double diffusionSigmaMicrometres = 0; ///< standard deviation on the film

    friend bool operator==(const InterlayerCoupling&, const InterlayerCoupling&) = default;
};

/// One emulsion layer.
struct FilmLayer {
    std::string name;     ///< "Red / cyan-forming"
    Spectrum sensitivity; ///< linear, in arbitrary units
    /// Density against log exposure on the axis that StockProfile::neutralLogExposure places.
    CharacteristicCurve characteristic;
    /// The part of the characteristic density that is the film's base; what exceeds it is dye.
    double characteristicBase = 0;
    SampledSpectrum dyeAbsorption; ///< spectral density of the dye for a developed density of 1

    friend bool operator==(const FilmLayer&, const FilmLayer&) = default;
};

/// Everything that sets one film stock apart; the simulation knows no stock by name. A value: built once,
/// then read from any thread.
struct StockProfile {
    FilmStock stock = FilmStock::portra400;
    std::string id;                  ///< stable name of these numbers and their version
    std::string summary;             ///< what the numbers are worth, for the film's users
    std::optional<int> isoSpeed;     ///< as published
    std::array<FilmLayer, 3> layers; ///< red-, green- and blue-sensitive
    SampledSpectrum baseDensity;     ///< spectral density of base, fog and mask together
    double neutralLogExposure = 0;   ///< log exposure of an 18 % reflectance on the curves' axis
    /// The layers share one panchromatic exposure, the luminance of all three.
    bool isPanchromatic = false;
    std::optional<InterlayerCoupling> coupling; ///< none where layers do not inhibit each other
    MaterialGrain grain;
    MaterialHalation halation;
    std::vector<MaterialProvenance>
        provenance; ///< one entry for each group of numbers; none when all are assumed

    bool isMeasured() const { return !provenance.empty(); }

    friend bool operator==(const StockProfile&, const StockProfile&) = default;
};

/// Every stock in the order of allFilmStocks, built on first use. Safe to ask from any thread.
std::span<const StockProfile> stockProfiles();
const StockProfile& stockProfile(FilmStock stock);

} // namespace lumisort::film
