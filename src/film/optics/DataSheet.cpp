#include "film/optics/DataSheet.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {
namespace {

using Points = std::vector<MaterialPoint>;

MonotoneCurve curve(const std::vector<double>& logExposures, const std::vector<double>& densities) {
    Points points;
    for (std::size_t i = 0; i < std::min(logExposures.size(), densities.size()); ++i) {
        points.push_back({logExposures[i], densities[i]});
    }
    return MonotoneCurve(std::move(points));
}

// The plotted log sensitivity is straight between its samples; its power is taken every 5 nm, so that a
// sparse run of samples becomes a smooth one. Beyond its ends the sensitivity falls to nothing in 20 nm.
SampledSpectrum sensitivity(const Points& logSamples) {
    constexpr double stepNM = 5;
    constexpr double taperNM = 20;
    Points linear{{logSamples.front().x - taperNM, 0}};
    for (std::size_t i = 0; i + 1 < logSamples.size(); ++i) {
        const auto& [x0, log0] = logSamples[i];
        const auto& [x1, log1] = logSamples[i + 1];
        for (double x = x0; x < x1; x += stepNM) {
            linear.push_back({x, std::pow(10.0, log0 + (log1 - log0) * (x - x0) / (x1 - x0))});
        }
    }
    linear.push_back({logSamples.back().x, std::pow(10.0, logSamples.back().y)});
    linear.push_back({logSamples.back().x + taperNM, 0});
    return {std::move(linear), SampledSpectrum::Outside::zero};
}

} // namespace

StockProfile profileOf(const DataSheet& sheet) {
    const auto layer = [&](std::size_t c) {
        const MonotoneCurve characteristic = curve(sheet.logExposures, sheet.densities[c]);
        return FilmLayer{sheet.layerNames[c], sensitivity(sheet.logSensitivities[c]), characteristic,
                         characteristic.points().front().y, sheet.dyes[c]};
    };
    const std::array<FilmLayer, 3> layers{layer(0), layer(1), layer(2)};
    return {.stock = sheet.stock,
            .id = sheet.id,
            .summary = sheet.summary,
            .isoSpeed = sheet.isoSpeed,
            .layers = layers,
            .baseDensity = {sheet.baseDensities, SampledSpectrum::Outside::holdEndpoint},
            .neutralLogExposure = logExposure(layers[0].characteristic, sheet.neutralRedDensity),
            .isPanchromatic = false,
            .coupling = sheet.coupling,
            .grain = sheet.grain,
            .halation = sheet.halation,
            .provenance = sheet.provenance};
}

} // namespace lumisort::film
