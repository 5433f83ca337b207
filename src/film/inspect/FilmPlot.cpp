#include "film/inspect/Chart.h"
#include "film/inspect/FilmInspection.h"
#include "film/optics/Colorimetry.h"
#include "film/optics/FilmConstants.h"
#include "film/optics/FilmSpectralModel.h"

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

constexpr const char* styles = R"(<style>
text { font-family: "Noto Sans", "DejaVu Sans", Helvetica, Arial, sans-serif; fill: #222 }
.title { font-size: 22px; font-weight: 600 } .subtitle { font-size: 13px; fill: #666 }
.heading { font-size: 15px; font-weight: 600 } .label { font-size: 12.5px; fill: #444 }
.tick { font-size: 11.5px; fill: #666 } .legend { font-size: 12px; fill: #333 }
.note { fill: #777 } .middle { text-anchor: middle } .end { text-anchor: end }
.grid { stroke: #e9e9e9 } .frame { fill: none; stroke: #b5b5b5 }
.mark { stroke: #999; stroke-dasharray: 2 3 }
.line { fill: none; stroke-width: 2; stroke-linejoin: round } .dot { fill: #fff; stroke-width: 1.5 }
</style>
)";

// How the wavelengths look, for the strip along their axis. Pure spectral colours lie outside of what a
// display shows; they are cut off there.
std::string spectrumGradient() {
    std::string svg = "<linearGradient id=\"spectrum\">\n";
    for (std::size_t i = 0; i < spectralSampleCount; i += 2) {
        const LinearRgb linear = linearRgbFromXyz * colourMatching1931(wavelengthNM(i));
        std::array<int, 3> srgb{};
        for (std::size_t c = 0; c < 3; ++c) {
            const double encoded = std::pow(std::clamp(linear[c], 0.0, 1.0), 1 / 2.2);
            srgb[c] = static_cast<int>(std::lround(255 * encoded));
        }
        svg += "<stop offset=\"" + std::to_string(100 * i / (spectralSampleCount - 1)) +
               "%\" stop-color=\"rgb(" + std::to_string(srgb[0]) + "," + std::to_string(srgb[1]) + "," +
               std::to_string(srgb[2]) + ")\"/>\n";
    }
    return svg + "</linearGradient>\n";
}

std::string subtitle(const StockProfile& stock) {
    if (stock.isMeasured()) {
        return (stock.isoSpeed ? "ISO " + std::to_string(*stock.isoSpeed) + ". " : "") +
               "Sensitivities, curves and base after the manufacturer's data sheet, dots where they were "
               "read; "
               "dyes and paper assumed.";
    }
    return std::string("Film and paper assumed, no measurements behind the curves") +
           (stock.isPanchromatic ? "; every layer receives the luminance of all three" : "");
}

} // namespace

std::string plotSvg(FilmStock stock, FilmPaper paper) {
    constexpr double chartWidth = 484;
    constexpr double chartHeight = 384;
    constexpr double left = 12;
    constexpr double top = 80;
    const FilmSpectralModel model(stock, paper);
    const std::string heading = std::string(title(stock)) + " on " + std::string(title(paper)) + " paper";

    std::string svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1480\" height=\"860\" "
                      "viewBox=\"0 0 1480 860\" role=\"img\">\n<title>" +
                      heading + "</title>\n" + styles + spectrumGradient() +
                      "<rect width=\"1480\" height=\"860\" fill=\"#fff\"/>\n"
                      "<text x=\"74\" y=\"46\" class=\"title\">" +
                      heading + "</text>\n<text x=\"74\" y=\"70\" class=\"subtitle\">" +
                      subtitle(model.stock) + "</text>\n";
    const std::array charts{sensitivityChart(model),      characteristicChart(model), dyeChart(model),
                            paperSensitivityChart(model), paperCurveChart(model),     paperDyeChart(model)};
    for (std::size_t i = 0; i < charts.size(); ++i) {
        drawChart(svg, charts[i], left + chartWidth * static_cast<double>(i % 3),
                  top + chartHeight * static_cast<double>(i / 3), chartWidth, chartHeight);
    }
    return svg + "</svg>\n";
}

} // namespace lumisort::film
