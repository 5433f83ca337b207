#include "film/optics/Colorimetry.h"
#include "film/optics/FilmOptics.h"
#include "film/optics/Slices.h"

namespace lumisort::film {
namespace {

constexpr int n = cubeDimension;

Vector3 layerExposure(const FilmSpectralModel& model, const FilmReconstructedSpectrum& spectrum) {
    Vector3 exposure;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        exposure += model.filmSensitivityWeights[i] * (spectrum.scale * spectrum.reflectance[i]);
    }
    if (model.stock == FilmStock::mono400) return Vector3::filled(dot(luminanceWeights, exposure));
    return exposure;
}

} // namespace

FilmLookupCube exposureCube(const FilmSpectralModel& model, int workers, std::stop_token stop) {
    const FilmSpectralReconstructor reconstructor = model.reconstructor();
    std::vector<float> data(static_cast<std::size_t>(n * n * n) * 4);
    forEachSlice(n, workers, stop, [&](int b) {
        std::vector<Vector3> colours;
        colours.reserve(n * n);
        for (int g = 0; g < n; ++g) {
            for (int r = 0; r < n; ++r) colours.push_back(Vector3{double(r), double(g), double(b)} / (n - 1));
        }
        float* const slice = data.data() + colours.size() * 4 * static_cast<std::size_t>(b);
        reconstructor.reconstruct(colours, [&](std::size_t i, const FilmReconstructedSpectrum& spectrum) {
            const Vector3 exposure = layerExposure(model, spectrum) * exposureTableFactor;
            for (std::size_t c = 0; c < 3; ++c) slice[4 * i + c] = static_cast<float>(exposure[c]);
            slice[4 * i + 3] = 1;
        });
    });
    return {std::move(data), n};
}

} // namespace lumisort::film
