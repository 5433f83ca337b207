#include "film/optics/FilmSpectralModel.h"

#include "film/optics/Colorimetry.h"
#include "film/optics/FilmMaterials.h"
#include "film/optics/GenericMaterials.h"
#include "film/optics/Invariant.h"

#include <algorithm>
#include <cmath>

namespace lumisort::film {
namespace {

template <class F>
auto sampled(F&& valueAt) {
    Spectral<decltype(valueAt(std::size_t{}))> values{};
    for (std::size_t i = 0; i < spectralSampleCount; ++i) values[i] = valueAt(i);
    return values;
}

template <class T>
T total(const Spectral<T>& values) {
    T result{};
    for (const T& value : values) result += value;
    return result;
}

Vector3 lobesAt(const Lobes& lobes, double wavelength) {
    Vector3 values;
    for (std::size_t c = 0; c < 3; ++c) values[c] = lobe(wavelength, lobes.centresNM[c], lobes.widthsNM[c]);
    return values;
}

// The lobes share the light: they sum to one.
Vector3 sharesAt(const Lobes& lobes, double wavelength) {
    const Vector3 values = lobesAt(lobes, wavelength);
    return values / sum(values);
}

// A black body with the weights of the trapezoid rule in it, so that integrals become plain sums.
Spectral<double> integrable(double kelvin) {
    Spectral<double> light = sampled([&](std::size_t i) { return blackbody(wavelengthNM(i), kelvin); });
    light.front() *= 0.5;
    light.back() *= 0.5;
    return light;
}

// Sensitivities under a light, so scaled that a perfect white exposes every layer by one.
Spectral<Vector3> exposureWeights(const Spectral<Vector3>& sensitivity, const Spectral<double>& light) {
    const Spectral<Vector3> product = sampled([&](std::size_t i) { return sensitivity[i] * light[i]; });
    const Vector3 white = total(product);
    return sampled([&](std::size_t i) { return product[i] / white; });
}

Spectral<Vector3> displayWeights(const Spectral<double>& light) {
    const Spectral<Vector3> xyz =
        sampled([&](std::size_t i) { return observer(wavelengthNM(i)) * light[i]; });
    const Vector3 white = total(xyz);
    const Vector3 sourceWhite{white[0] / white[1], 1, white[2] / white[1]};
    const Spectral<Vector3> rgb =
        sampled([&](std::size_t i) { return linearRGBFromXYZ * adaptToD65(xyz[i] / white[1], sourceWhite); });
    const Vector3 whiteRGB = total(rgb);
    return sampled([&](std::size_t i) { return rgb[i] / whiteRGB; });
}

// Mixtures of smooth lobes whose display RGB is (1, 0, 0), (0, 1, 0) and (0, 0, 1).
Spectral<Vector3> unitBasis(const Spectral<Vector3>& display) {
    const Spectral<Vector3> lobes =
        sampled([](std::size_t i) { return lobesAt(reconstructionLobes, wavelengthNM(i)); });
    Matrix3 seen;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) seen += outer(display[i], lobes[i]);
    const Matrix3 mix = inverse(seen);
    return sampled([&](std::size_t i) { return lobes[i] * mix; });
}

std::array<Vector3, 3> linearExposure(FilmStock stock, const Spectral<Vector3>& film,
                                      const Spectral<Vector3>& basis) {
    std::array<Vector3, 3> rows;
    for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t i = 0; i < spectralSampleCount; ++i) rows[c] += basis[i] * film[i][c];
        rows[c] = rows[c] / sum(rows[c]);
    }
    if (stock == FilmStock::mono400) {
        rows.fill(rows[0] * luminanceWeights[0] + rows[1] * luminanceWeights[1] +
                  rows[2] * luminanceWeights[2]);
    }
    return rows;
}

// Density above the curve's toe.
double developed(const MonotoneCurve& curve, double logExposure) {
    return std::max(curve.value(logExposure) - curve.points().front().y, 0.0);
}

Vector3 neutralDensities(const FilmSpectralModel& model) {
    if (!model.material) return Vector3::filled(model.filmMinimum + model.filmRange / 2);
    Vector3 densities;
    for (std::size_t c = 0; c < 3; ++c) {
        densities[c] =
            developed(model.material->layers[c].characteristic, model.material->neutralLogExposure);
    }
    return densities;
}

Vector3 seenThroughNegative(const FilmSpectralModel& model, const Vector3& densities) {
    Vector3 seen;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        const double density = model.baseDensities[i] + dot(densities, model.dyes[i]);
        const double transmission = density < 0 ? 1.0 : std::pow(10.0, -density);
        seen += model.paperWeights[i] * transmission;
    }
    return seen;
}

} // namespace

FilmSpectralModel::FilmSpectralModel(FilmStock stock_, FilmPaper paper_) : stock(stock_), paper(paper_) {
    material = stock == FilmStock::portra400 ? &FilmMaterials::portra400() : nullptr;
    require(!material || material->layers.size() >= 3, "a film profile has fewer than three layers");

    const StockConstants film = stockConstants(stock);
    filmMinimum = film.minimum;
    filmRange = film.range;
    filmSlope = film.slope;
    grainDensity = film.grainDensity;
    const PaperConstants print = paperConstants(paper);
    paperMinimum = print.minimum;
    paperRange = print.range;
    paperSlope = print.slope;
    const double x = (midGreyDensity - paperMinimum) / paperRange;
    paperCalibration = std::log(x / (1 - x)) / paperSlope;

    // One number for each layer at a grid wavelength, from the profile or from assumed lobes.
    const auto perLayer = [this](SampledSpectrum FilmMaterialLayer::* measured) {
        return sampled([&](std::size_t i) {
            Vector3 values;
            for (std::size_t c = 0; c < 3; ++c) {
                values[c] = (material->layers[c].*measured).value(wavelengthNM(i));
            }
            return values;
        });
    };
    dyes = material ? perLayer(&FilmMaterialLayer::dyeAbsorption)
                    : sampled([](std::size_t i) { return sharesAt(filmDyeLobes, wavelengthNM(i)); });
    const Spectral<Vector3> sensitivity =
        material ? perLayer(&FilmMaterialLayer::sensitivity)
                 : sampled([](std::size_t i) { return lobesAt(filmSensitivityLobes, wavelengthNM(i)); });
    baseDensities = sampled(
        [this](std::size_t i) { return material ? material->baseDensity.value(wavelengthNM(i)) : 0.0; });
    paperDyes = sampled([](std::size_t i) { return sharesAt(paperDyeLobes, wavelengthNM(i)); });
    const Spectral<Vector3> paperSensitivity =
        sampled([](std::size_t i) { return lobesAt(paperSensitivityLobes, wavelengthNM(i)); });

    const Spectral<double> daylight = integrable(takingIlluminantKelvin);
    paperWeights = exposureWeights(paperSensitivity, integrable(printingLampKelvin));
    reflectionWeights = displayWeights(daylight);
    filmSensitivityWeights = exposureWeights(sensitivity, daylight);
    reconstructionBasis = unitBasis(reflectionWeights);
    exposureRows = linearExposure(stock, filmSensitivityWeights, reconstructionBasis);
    neutralTransmission = seenThroughNegative(*this, neutralDensities(*this));
}

Vector3 FilmSpectralModel::layerDensity(const Vector3& exposures) const {
    Vector3 densities;
    for (std::size_t c = 0; c < 3; ++c) {
        // In this order a NaN compares false and becomes the smallest exposure.
        const double exposure = std::max(smallestExposure, exposures[c]);
        const double relativeLog = std::log10(exposure / midGreyExposure);
        densities[c] = material ? developed(material->layers[c].characteristic,
                                            relativeLog + material->neutralLogExposure)
                                : filmMinimum + filmRange / (std::exp(-filmSlope * relativeLog) + 1);
    }
    return densities;
}

Vector3 FilmSpectralModel::layerRanges() const {
    if (!material) return Vector3::filled(filmRange);
    constexpr double aboveEveryCurve = 10;
    Vector3 ranges;
    for (std::size_t c = 0; c < 3; ++c) {
        ranges[c] = developed(material->layers[c].characteristic, aboveEveryCurve);
    }
    return ranges;
}

Vector3 FilmSpectralModel::reflectionCubeMinimums() const {
    Vector3 minimums;
    for (const Vector3& weights : reflectionWeights) {
        for (std::size_t c = 0; c < 3; ++c) minimums[c] += std::min(weights[c], 0.0);
    }
    return minimums;
}

Vector3 FilmSpectralModel::reflectionCubeRanges() const {
    Vector3 ranges;
    for (const Vector3& weights : reflectionWeights) {
        for (std::size_t c = 0; c < 3; ++c) ranges[c] += std::abs(weights[c]);
    }
    return ranges;
}

FilmSpectralReconstructor FilmSpectralModel::reconstructor() const {
    const Spectral<double> wavelengths = sampled(wavelengthNM);
    return {{reflectionWeights.begin(), reflectionWeights.end()},
            {wavelengths.begin(), wavelengths.end()},
            {reconstructionBasis.begin(), reconstructionBasis.end()},
            64};
}

} // namespace lumisort::film
