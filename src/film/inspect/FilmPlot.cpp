#include "film/inspect/FilmPlot.h"

#include "film/inspect/FilmCharts.h"
#include "film/optics/Colorimetry.h"

#include <algorithm>
#include <cmath>

namespace lumisort::film {
namespace {

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
    const auto charts = filmCharts(model);
    for (std::size_t i = 0; i < charts.size(); ++i) {
        drawChart(svg, charts[i], left + chartWidth * static_cast<double>(i % 3),
                  top + chartHeight * static_cast<double>(i / 3), chartWidth, chartHeight);
    }
    return svg + "</svg>\n";
}

} // namespace lumisort::film
