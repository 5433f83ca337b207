#include "film/optics/FilmMaterials.h"

#include "film/optics/Portra400Tables.h"
#include "film/optics/SpectralGrid.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace lumisort::film {
namespace {

using Points = std::vector<MaterialPoint>;

// A refusal here is a fault in a constant table: noexcept makes it stop the program.
SampledSpectrum spectrum(std::span<const MaterialPoint> points, SampledSpectrum::Outside outside) noexcept {
    return {Points(points.begin(), points.end()), outside};
}

MonotoneCurve curve(std::span<const double> x, std::span<const double> y) noexcept {
    Points points;
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i) points.push_back({x[i], y[i]});
    return MonotoneCurve(std::move(points));
}

// The plotted log sensitivity is straight between its samples; its power is taken every 5 nm, so that a
// sparse run of samples becomes a smooth one. Beyond its ends the sensitivity falls to nothing in 20 nm.
SampledSpectrum logSpectrum(std::span<const MaterialPoint> samples) noexcept {
    constexpr double stepNM = 5;
    constexpr double taperNM = 20;
    Points linear{{samples.front().x - taperNM, 0}};
    for (std::size_t i = 0; i + 1 < samples.size(); ++i) {
        const auto& [x0, log0] = samples[i];
        const auto& [x1, log1] = samples[i + 1];
        for (double x = x0; x < x1; x += stepNM) {
            linear.push_back({x, std::pow(10.0, log0 + (log1 - log0) * (x - x0) / (x1 - x0))});
        }
    }
    linear.push_back({samples.back().x, std::pow(10.0, samples.back().y)});
    linear.push_back({samples.back().x + taperNM, 0});
    return spectrum(linear, SampledSpectrum::Outside::zero);
}

// The three absorptions share the light: they sum to one at every wavelength, and each keeps the floor
// that the contamination sets.
SampledSpectrum assumedAbsorption(std::size_t layer) noexcept {
    Points points;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        std::array<double, 3> lobe{};
        for (std::size_t j = 0; j < 3; ++j) {
            const double x = (wavelengthNM(i) - portra400::dyeCentresNM[j]) / portra400::dyeWidthsNM[j];
            lobe[j] = std::exp(-0.5 * (x * x));
        }
        constexpr double c = portra400::dyeContamination;
        points.push_back({wavelengthNM(i), c + (1 - 3 * c) * lobe[layer] / (lobe[0] + lobe[1] + lobe[2])});
    }
    return spectrum(points, SampledSpectrum::Outside::zero);
}

FilmMaterialProfile makePortra400() {
    using namespace portra400;
    const std::array<std::span<const MaterialPoint>, 3> logSensitivities{
        redLogSensitivity, greenLogSensitivity, blueLogSensitivity};
    std::vector<FilmMaterialLayer> layers;
    for (std::size_t i = 0; i < 3; ++i) {
        layers.push_back({layerNames[i], logSpectrum(logSensitivities[i]), curve(logExposures, densities[i]),
                          assumedAbsorption(i)});
    }
    const double neutral = layers[0].characteristic.inverse(neutralRedDensity);
    const std::vector<MaterialProvenance> origins = provenance();
    return {.id = id,
            .title = portra400::title,
            .isoSpeed = isoSpeed,
            .layers = std::move(layers),
            .baseDensity = spectrum(baseDensities, SampledSpectrum::Outside::holdEndpoint),
            .neutralLogExposure = neutral,
            .grain = {.meanRadiusMicrometres = {grainMeanRadiusMicrometres},
                      .radiusCoefficientOfVariation = grainRadiusCoefficientOfVariation,
                      .densityAmount = grainDensityAmount,
                      .isMonochrome = false,
                      .provenance = origins[5]},
            .halation = {.scatteringFraction = {halationScatteringFraction},
                         .coreSigmaMicrometres = {halationCoreSigmaMicrometres},
                         .tailSigmaMicrometres = {halationTailSigmaMicrometres},
                         .tailWeight = {halationTailWeight},
                         .provenance = origins[6]},
            .provenance = origins};
}

} // namespace

const FilmMaterialProfile& FilmMaterials::portra400() {
    static const FilmMaterialProfile profile = makePortra400();
    return profile;
}

} // namespace lumisort::film
