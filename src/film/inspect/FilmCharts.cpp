#include "film/inspect/FilmCharts.h"

#include "film/optics/FilmConstants.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {
namespace {

using Points = std::vector<MaterialPoint>;
using Names = std::array<const char*, 3>;

constexpr Names layerNames{"Red layer", "Green layer", "Blue layer"};
constexpr Names layerColours{"#c8352b", "#2f8f4e", "#2c64b4"};
constexpr Names dyeNames{"Cyan", "Magenta", "Yellow"};
constexpr Names dyeColours{"#1397b3", "#b8338c", "#c79a05"};
constexpr const char* neutralColour = "#444444";
const Axis wavelengths{"Wavelength (nm)", 380, 780, 50, 0, "url(#spectrum)"};
const Axis shares{"Share of absorption", 0, 1, 0.2, 1};

/// A function drawn from one x to another.
template <class F>
Points drawn(double from, double to, const F& valueAt) {
    constexpr int steps = 200;
    Points points;
    for (int i = 0; i <= steps; ++i) {
        const double x = from + (to - from) * i / steps;
        points.push_back({x, valueAt(x)});
    }
    return points;
}

template <class Space>
std::vector<ChartLine> spectra(const Spectral<Triple<Space>>& values, const Names& names,
                               const Names& colours) {
    std::vector<ChartLine> lines;
    for (std::size_t c = 0; c < 3; ++c) {
        Points points;
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            points.push_back({wavelengthNM(i), values[i][c]});
        }
        lines.push_back({names[c], colours[c], std::move(points)});
    }
    return lines;
}

Chart sensitivityChart(const FilmSpectralModel& model) {
    constexpr double decades = 3;
    const double highest = model.stock.isMeasured() ? decades : 0;
    Chart chart{.title = "Film: spectral sensitivity",
                .x = wavelengths,
                .y = {"log₁₀ sensitivity (relative)", highest - decades, highest, 0.5, 1}};
    for (std::size_t c = 0; c < 3; ++c) {
        const auto logSensitivity = [&](double wavelength) {
            const double sensitivity = value(model.stock.layers[c].sensitivity, wavelength);
            return std::log10(std::max(sensitivity, 1e-6)); // below the chart, where there is none
        };
        chart.lines.push_back({layerNames[c], layerColours[c], drawn(380, 780, logSensitivity)});
    }
    return chart;
}

Chart characteristicChart(const FilmSpectralModel& model) {
    Chart chart{.title = "Film: characteristic curves"};
    if (model.stock.isMeasured()) {
        chart.x = {"log₁₀ exposure (lux·s)", -3.6, 0.6, 0.5, 1};
        chart.y = {"Density (Status M)", 0, 3.5, 0.5, 1};
        for (std::size_t c = 0; c < 3; ++c) {
            const CharacteristicCurve& curve = model.stock.layers[c].characteristic;
            const auto* measured = std::get_if<MonotoneCurve>(&curve);
            chart.lines.push_back({layerNames[c], layerColours[c],
                                   drawn(-3.6, 0.6, [&](double x) { return density(curve, x); }),
                                   measured ? measured->points() : Points{}});
        }
    } else {
        chart.x = {"log₁₀ exposure, relative to mid-grey", -4, 4, 1, 0};
        chart.y = {"Density above base", 0, 3.5, 0.5, 1};
        const auto developed = [&](double x) {
            return model.layerDensity(Exposure::filled(midGreyExposure * std::pow(10.0, x)))[0];
        };
        chart.lines.push_back({"All layers", neutralColour, drawn(-4, 4, developed)});
    }
    chart.mark = {model.stock.neutralLogExposure, "mid-grey"};
    return chart;
}

Chart dyeChart(const FilmSpectralModel& model) {
    Chart chart{.title = "Film: dyes and base",
                .x = wavelengths,
                .y = shares,
                .lines = spectra(model.dyes, dyeNames, dyeColours)};
    if (model.stock.isMeasured()) {
        const SampledSpectrum& base = model.stock.baseDensity;
        chart.y.label = "Share of absorption; base density";
        chart.lines.push_back({"Base", neutralColour,
                               drawn(380, 780, [&](double wavelength) { return base.value(wavelength); }),
                               base.points(), true});
    } else {
        chart.note = "clear base";
    }
    return chart;
}

Chart paperSensitivityChart(const FilmSpectralModel& model) {
    Spectral<Transmission> relative = model.paperWeights;
    for (std::size_t c = 0; c < 3; ++c) {
        double peak = 0;
        for (const Transmission& weights : model.paperWeights) peak = std::max(peak, weights[c]);
        for (Transmission& weights : relative) weights[c] /= peak;
    }
    return {.title = "Paper: sensitivity under the printing lamp",
            .x = wavelengths,
            .y = {"Sensitivity (of peak)", 0, 1, 0.2, 1},
            .lines = spectra(relative, layerNames, layerColours)};
}

Chart paperCurveChart(const FilmSpectralModel& model) {
    const auto density = [&](double logDose) { return model.paper.curve.density(logDose); };
    const double neutral = model.paperCalibration;
    return {.title = "Paper: characteristic curve",
            .x = {"log₁₀ print dose (relative)", -3, 3, 1, 0},
            .y = {"Print density", 0, 3, 0.5, 1},
            .lines = {{"All layers", neutralColour, drawn(-3, 3, density), {{neutral, density(neutral)}}}},
            .mark = ChartMark{neutral, "prints as 18 % grey"}};
}

Chart paperDyeChart(const FilmSpectralModel& model) {
    return {.title = "Paper: dyes",
            .x = wavelengths,
            .y = shares,
            .lines = spectra(model.paperDyes, dyeNames, dyeColours)};
}

} // namespace

std::array<Chart, 6> filmCharts(const FilmSpectralModel& model) {
    return {sensitivityChart(model),      characteristicChart(model), dyeChart(model),
            paperSensitivityChart(model), paperCurveChart(model),     paperDyeChart(model)};
}

} // namespace lumisort::film
