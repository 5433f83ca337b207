#include "film/optics/AssumedMaterials.h"

#include "film/optics/SpectralGrid.h"

#include <utility>

namespace lumisort::film {

std::array<SampledSpectrum, 3> assumedDyes(const GaussianTriple& dyes, double floor) {
    const auto dye = [&](std::size_t layer) {
        std::vector<MaterialPoint> points;
        for (std::size_t i = 0; i < spectralSampleCount; ++i) {
            points.push_back({wavelengthNM(i), dyes.sharesAt(wavelengthNM(i), floor)[layer]});
        }
        return SampledSpectrum(std::move(points), SampledSpectrum::Outside::zero);
    };
    return {dye(0), dye(1), dye(2)};
}

MaterialHalation assumedHalation(MaterialProvenance provenance) {
    return {.scatteringFraction = {0.025, 0.008, 0.002},
            .coreSigmaMicrometres = {12, 9, 6},
            .tailSigmaMicrometres = {45, 32, 20},
            .tailWeight = {0.18, 0.18, 0.18},
            .provenance = std::move(provenance)};
}

InterlayerCoupling assumedCoupling() {
    return {.inhibition = {Vector3{0, 0.06, 0.035}, Vector3{0.04, 0, 0.04}, Vector3{0.025, 0.05, 0}},
            .diffusionSigmaMicrometres = 8};
}

} // namespace lumisort::film
