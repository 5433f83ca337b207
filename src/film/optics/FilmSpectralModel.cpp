#include "film/optics/FilmSpectralModel.h"

#include "film/optics/Colorimetry.h"
#include "film/optics/FilmConstants.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumisort::film {
namespace {

constexpr double daylightKelvin = 6504;

/// Smooth spectra that are mixed into any colour that a plain reflectance cannot have.
constexpr GaussianTriple reconstructionBands{{625, 535, 455}, {20, 20, 20}};

template <class ValueAt>
Spectral<Vector3> perLayer(const std::array<FilmLayer, 3>& layers, const ValueAt& valueAt) {
    return sampled([&](double wavelength) {
        return Vector3{valueAt(layers[0], wavelength), valueAt(layers[1], wavelength),
                       valueAt(layers[2], wavelength)};
    });
}

// A black body with the weights of the trapezoid rule in it, so that integrals become plain sums.
Spectral<double> integrable(double kelvin) {
    Spectral<double> light = sampled([&](double wavelength) { return blackbody(wavelength, kelvin); });
    light.front() *= 0.5;
    light.back() *= 0.5;
    return light;
}

// Sensitivities under a light, so scaled that a perfect white exposes every layer by one.
template <class Response>
Spectral<Response> responseWeights(const Spectral<Vector3>& sensitivity, const Spectral<double>& light) {
    Spectral<Vector3> product{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) product[i] = sensitivity[i] * light[i];
    const Vector3 white = total(product);
    Spectral<Response> weights{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) weights[i] = {(product[i] / white).v};
    return weights;
}

Spectral<LinearRgb> displayWeights(const Spectral<double>& light) {
    Spectral<Xyz> xyz = sampled(colourMatching1931);
    for (std::size_t i = 0; i < spectralSampleCount; ++i) xyz[i] = xyz[i] * light[i];
    const Xyz white = total(xyz);
    const Xyz sourceWhite{white[0] / white[1], 1, white[2] / white[1]};
    Spectral<LinearRgb> rgb{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        rgb[i] = linearRgbFromXyz * adaptToD65(xyz[i] / white[1], sourceWhite);
    }
    const Vector3 whiteRgb{total(rgb).v};
    for (LinearRgb& weights : rgb) weights = weights / whiteRgb;
    return rgb;
}

// Mixtures of smooth bands whose display colours are (1, 0, 0), (0, 1, 0) and (0, 0, 1).
Spectral<Vector3> unitBasis(const Spectral<LinearRgb>& display) {
    const Spectral<Vector3> bands =
        sampled([](double wavelength) { return reconstructionBands.at(wavelength); });
    Matrix3 seen;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) seen += outer(Vector3{display[i].v}, bands[i]);
    const Matrix3 mix = inverse(seen);
    Spectral<Vector3> basis{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) basis[i] = bands[i] * mix;
    return basis;
}

ColourMatrix<Exposure, LinearRgb> linearExposure(bool isPanchromatic, const Spectral<Exposure>& film,
                                                 const Spectral<Vector3>& basis) {
    std::array<Vector3, 3> rows;
    for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < spectralSampleCount; ++i) rows[c] += basis[i] * film[i][c];
        rows[c] = rows[c] / sum(rows[c]);
    }
    if (isPanchromatic) {
        rows.fill(rows[0] * luminanceWeights[0] + rows[1] * luminanceWeights[1] +
                  rows[2] * luminanceWeights[2]);
    }
    return {{rows}};
}

} // namespace

FilmSpectralModel::FilmSpectralModel(FilmStock filmStock, FilmPaper filmPaper)
    : FilmSpectralModel(stockProfile(filmStock), paperProfile(filmPaper)) {}

FilmSpectralModel::FilmSpectralModel(StockProfile film, PaperProfile print)
    : stock(std::move(film)), paper(print),
      dyes(perLayer(stock.layers,
                    [](const FilmLayer& layer, double w) { return layer.dyeAbsorption.value(w); })),
      paperDyes(sampled([this](double wavelength) { return paper.dyes.sharesAt(wavelength); })),
      baseDensities(sampled([this](double wavelength) { return stock.baseDensity.value(wavelength); })),
      filmSensitivityWeights(responseWeights<Exposure>(
          perLayer(stock.layers,
                   [](const FilmLayer& layer, double w) { return value(layer.sensitivity, w); }),
          integrable(daylightKelvin))),
      paperWeights(responseWeights<Transmission>(
          sampled([this](double wavelength) { return paper.sensitivities.at(wavelength); }),
          integrable(paper.printingLampKelvin))),
      reflectionWeights(displayWeights(integrable(daylightKelvin))),
      reconstructionBasis(unitBasis(reflectionWeights)),
      exposureRows(linearExposure(stock.isPanchromatic, filmSensitivityWeights, reconstructionBasis)),
      neutralTransmission(seenThroughNegative(layerDensity(Exposure::filled(midGreyExposure)))),
      paperCalibration(paper.curve.logExposure(midGreyDensity)) {}

Exposure FilmSpectralModel::exposure(const FilmReconstructedSpectrum& spectrum) const {
    Exposure exposure;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        exposure += filmSensitivityWeights[i] * (spectrum.scale * spectrum.reflectance[i]);
    }
    return stock.isPanchromatic ? Exposure::filled(dot(luminanceWeights, exposure)) : exposure;
}

Density FilmSpectralModel::layerDensity(const Exposure& exposures) const {
    Density densities;
    for (std::size_t c = 0; c < 3; ++c) {
        const FilmLayer& layer = stock.layers[c];
        // In this order a NaN compares false and becomes the smallest exposure.
        const double exposure = std::max(smallestExposure, exposures[c]);
        const double logExposure = std::log10(exposure / midGreyExposure) + stock.neutralLogExposure;
        densities[c] = std::max(density(layer.characteristic, logExposure) - layer.characteristicBase, 0.0);
    }
    return densities;
}

Density FilmSpectralModel::layerMinimums() const {
    Density minimums;
    for (std::size_t c = 0; c < 3; ++c) {
        minimums[c] = lowestDensity(stock.layers[c].characteristic) - stock.layers[c].characteristicBase;
    }
    return minimums;
}

Density FilmSpectralModel::layerRanges() const {
    Density ranges;
    for (std::size_t c = 0; c < 3; ++c) ranges[c] = densityRange(stock.layers[c].characteristic);
    return ranges;
}

Transmission FilmSpectralModel::seenThroughNegative(const Density& densities) const {
    Transmission seen;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        seen += paperWeights[i] * transmission(baseDensities[i] + dot(densities, dyes[i]));
    }
    return seen;
}

Vector3 FilmSpectralModel::printCalibration(double printExposureStops) const {
    Vector3 calibration;
    for (std::size_t c = 0; c < 3; ++c) {
        calibration[c] =
            paperCalibration + printExposureStops * decadesPerStop - std::log10(neutralTransmission[c]);
    }
    return calibration;
}

LinearRgb FilmSpectralModel::reflectionCubeMinimums() const {
    LinearRgb minimums;
    for (const LinearRgb& weights : reflectionWeights) {
        for (std::size_t c = 0; c < 3; ++c) minimums[c] += std::min(weights[c], 0.0);
    }
    return minimums;
}

LinearRgb FilmSpectralModel::reflectionCubeRanges() const {
    LinearRgb ranges;
    for (const LinearRgb& weights : reflectionWeights) {
        for (std::size_t c = 0; c < 3; ++c) ranges[c] += std::abs(weights[c]);
    }
    return ranges;
}

FilmSpectralReconstructor FilmSpectralModel::reconstructor() const {
    const Spectral<double> wavelengths = sampled([](double wavelength) { return wavelength; });
    return {{reflectionWeights.begin(), reflectionWeights.end()},
            {wavelengths.begin(), wavelengths.end()},
            {reconstructionBasis.begin(), reconstructionBasis.end()},
            64};
}

} // namespace lumisort::film
