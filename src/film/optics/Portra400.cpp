#include "film/optics/Portra400.h"

#include "film/optics/AssumedMaterials.h"
#include "film/optics/DataSheet.h"

// Every number of the Portra 400 study, as read from the manufacturer's technical data sheet (Kodak
// publication E-4050) or assumed where the sheet is silent. The provenance entries say which is which.

namespace lumisort::film {
namespace {

// The page numbers are those of the edition that was read, portra400-techpub-e4050.pdf. At the maker's
// address is a later and shorter one.
constexpr const char* source =
    "Kodak publication E-4050, portra400-techpub-e4050.pdf (present edition: "
    "https://www.kodakprofessional.com/sites/default/files/wysiwyg/pro/resources/e4050_portra_400.pdf)";

// clang-format off
MaterialProvenance grainProvenance() {
    return {"Grain parameters", MaterialEvidence::modelAssumption, std::nullopt, std::nullopt,
         "Independent Lumisort model",
         "Radius, radius distribution and density amount are model choices. Kodak's page-4 Print Grain "
         "Index (37 at 4.4× enlargement) is a perceptual print metric and does not determine particle "
         "radii, density RMS or layer correlations."};
}

MaterialProvenance halationProvenance() {
    return {"Halation parameters", MaterialEvidence::modelAssumption, std::nullopt, std::nullopt,
         "Independent Lumisort model",
         "Stock-specific backing reflectivity and scattering kernels are unpublished here. Radii and "
         "fractions are physical-unit model assumptions, not measurements of Portra 400."};
}

/// One entry for each group of numbers of the sheet below.
std::vector<MaterialProvenance> provenance() {
    return {
        {"Effective channel characteristic curves", MaterialEvidence::graphEstimate, source, 5,
         "Daylight exposure; Status-M densitometry; C-41. Absolute log10(lux-second) horizontal axis.",
         "About ±0.03 density and ±0.05 log exposure from the plotted lines. Curves are composite "
         "densitometry, not isolated layers. Outside -3.4...0.5 log exposure, endpoint clamping is an "
         "unmeasured boundary condition."},
        {"Layer spectral sensitivity", MaterialEvidence::graphEstimate, source, 5,
         "1/50 second; 0.2 density above D-min; reciprocal energy exposure (erg/cm²), converted from "
         "log10 to linear relative response.",
         "About ±0.10 log sensitivity and ±5 nm. Sparse samples interpolate linearly in log response "
         "before conversion; unplotted tails taper to zero over 20 nm. Relative layer normalization is a "
         "calibration assumption."},
        {"Aggregate minimum spectral density", MaterialEvidence::graphEstimate, source, 5,
         "Diffuse spectral D-min; aggregate film base, fog and masking absorption.",
         "About ±0.03 density, ±5 nm. 400...700 nm measured graph span; held endpoints outside it are "
         "assumed. The midscale-neutral curve cannot identify three separate dyes."},
        {"Neutral exposure reference", MaterialEvidence::publishedValue, source, 3,
         "Published gray-card red-filter/Status-M density interval 0.77...0.87; target midpoint 0.82.",
         "Neutral log exposure is inferred by inverse interpolation of the approximate red "
         "characteristic curve. Not a camera-specific scene radiometric calibration or a new ISO "
         "measurement."},
        {"Dye absorption basis", MaterialEvidence::modelAssumption, std::nullopt, std::nullopt,
         "Independent Lumisort model",
         "Independent smooth C/M/Y absorption lobes, not Kodak dye measurements. Status-M-to-dye mapping "
         "is an effective approximation. No DIR coupling, fluorescence or paper scattering data were "
         "recovered from the sheet."},
        grainProvenance(),
        halationProvenance()};
}

DataSheet sheet() {
    return {
        .stock = FilmStock::portra400,
        .id = "portra400-study-v1",
        .summary = "Portra 400 response and sensitivity estimated from Kodak E-4050. Dyes, paper and chemistry remain "
                   "model assumptions; not a measured replica.",
        .isoSpeed = 400,
        .layerNames = {"Red / cyan-forming", "Green / magenta-forming", "Blue / yellow-forming"},

        // Characteristic curves, page 5: Status-M density against log10 exposure in lux seconds.
        .logExposures = {-3.4, -3.0, -2.7, -2.4, -2.0, -1.5, -1.0, -0.5,  0.0,  0.5},
        .densities = {{
            {             0.22, 0.23, 0.27, 0.39, 0.59, 0.86, 1.13, 1.41, 1.69, 1.98},  // red
            {             0.65, 0.66, 0.70, 0.83, 1.05, 1.33, 1.61, 1.88, 2.15, 2.43},  // green
            {             0.87, 0.89, 0.99, 1.16, 1.41, 1.72, 2.04, 2.36, 2.69, 3.01},  // blue
        }},

        // The published density interval of a grey card through the red filter, page 3, is 0.77 to 0.87; an
        // 18 % patch receives the exposure that makes its middle.
        .neutralRedDensity = 0.82,

        // Spectral sensitivity, page 5: wavelength in nm, log10 of the relative sensitivity.
        .logSensitivities = {{
            {{490, 0.38}, {510, 0.67}, {530, 0.82}, {550, 0.80}, {570, 1.29}, {590, 2.01},
             {610, 2.29}, {630, 2.40}, {650, 2.61}, {660, 2.50}, {670, 1.73}, {680, 0.70}},
            {{390, 1.24}, {410, 1.53}, {430, 1.39}, {450, 1.32}, {470, 1.39}, {490, 1.88},
             {510, 2.11}, {530, 2.31}, {550, 2.53}, {570, 2.35}, {590, 1.56}, {600, 0.67}},
            {{380, 1.73}, {400, 2.56}, {420, 2.55}, {440, 2.55}, {460, 2.53}, {470, 2.58},
             {480, 2.31}, {500, 1.20}, {520, 0.27}},
        }},

        // Minimum density, page 5: wavelength in nm, density of base, fog and mask together.
        .baseDensities = {
            {400, 0.70}, {420, 0.74}, {440, 0.82}, {460, 0.80}, {480, 0.77}, {500, 0.76}, {520, 0.74}, {540, 0.62},
            {560, 0.58}, {580, 0.43}, {600, 0.24}, {620, 0.19}, {640, 0.19}, {660, 0.20}, {680, 0.22}, {700, 0.22}},

        // Dye absorption, assumed.
        .dyes = assumedDyes({.centresNM = {650, 550, 445}, .sigmasNM = {48, 40, 34}}, 0.035),
        .coupling = assumedCoupling(),

        .grain = {.meanRadiusMicrometres = {0.8, 0.7, 0.6},
                  .radiusCoefficientOfVariation = assumedGrainVariation,
                  .densityAmount = 0.075,
                  .correlation = assumedGrainCorrelation,
                  .isMonochrome = false,
                  .provenance = grainProvenance()},
        .halation = assumedHalation(halationProvenance()),
        .provenance = provenance()};
}
// clang-format on

} // namespace

StockProfile portra400Profile() {
    return profileOf(sheet());
}

} // namespace lumisort::film
