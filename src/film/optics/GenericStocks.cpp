#include "film/optics/GenericStocks.h"

#include "film/optics/AssumedMaterials.h"
#include "film/optics/SpectralGrid.h"

namespace lumisort::film {
namespace {

/// One row: what sets a generic stock apart from the others.
struct GenericStock {
    FilmStock stock;
    SigmoidCurve curve; ///< of every layer, over log exposure relative to mid-grey
    Vector3 grainRadiusMicrometres;
    double grainDensity;
    bool isBlackAndWhite;
};

constexpr std::array genericStocks{
    GenericStock{FilmStock::color100, {0.04, 2.7, 1.15}, {0.6, 0.5, 0.45}, 0.035, false},
    GenericStock{FilmStock::color400, {0.055, 2.65, 1.08}, {1.1, 0.95, 0.8}, 0.065, false},
    GenericStock{FilmStock::mono400, {0.035, 2.8, 1.2}, {2, 2, 2}, 0.075, true},
};

constexpr GaussianTriple sensitivities{{655, 540, 440}, {24, 23, 21}};
constexpr GaussianTriple dyes{{640, 540, 445}, {42, 32, 29}};
constexpr std::array layerNames{"Red / cyan-forming", "Green / magenta-forming", "Blue / yellow-forming"};

MaterialProvenance assumed(const char* component) {
    return {.component = component,
            .evidence = MaterialEvidence::modelAssumption,
            .source = std::nullopt,
            .sourcePage = std::nullopt,
            .conditions = "Independent Lumisort model",
            .uncertainty = "A generic material, not a measurement of any product."};
}

StockProfile profileOf(const GenericStock& row) {
    const auto dye = assumedDyes(dyes, 0);
    const auto layer = [&](std::size_t c) {
        return FilmLayer{layerNames[c],
                         GaussianSpectrum{sensitivities.centresNM[c], sensitivities.sigmasNM[c]}, row.curve,
                         0, dye[c]};
    };
    constexpr double first = wavelengthNM(0), last = wavelengthNM(spectralSampleCount - 1);
    return {.stock = row.stock,
            .id = std::string(storedName(row.stock)) + "-generic-v1",
            .summary = "Independent physical simulation using generic film and paper materials",
            .isoSpeed = std::nullopt,
            .layers = {layer(0), layer(1), layer(2)},
            .baseDensity = {{{first, 0}, {last, 0}}, SampledSpectrum::Outside::holdEndpoint},
            .neutralLogExposure = 0,
            .isPanchromatic = row.isBlackAndWhite,
            .coupling = row.isBlackAndWhite ? std::nullopt : std::optional(assumedCoupling()),
            .grain = {.meanRadiusMicrometres = row.grainRadiusMicrometres,
                      .radiusCoefficientOfVariation = assumedGrainVariation,
                      .densityAmount = row.grainDensity,
                      .correlation = assumedGrainCorrelation,
                      .isMonochrome = row.isBlackAndWhite,
                      .provenance = assumed("Grain parameters")},
            .halation = assumedHalation(assumed("Halation parameters")),
            .provenance = {}};
}

} // namespace

std::vector<StockProfile> genericProfiles() {
    std::vector<StockProfile> profiles;
    for (const GenericStock& row : genericStocks) profiles.push_back(profileOf(row));
    return profiles;
}

} // namespace lumisort::film
