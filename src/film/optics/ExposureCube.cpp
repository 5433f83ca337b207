#include "film/optics/ExposureCube.h"

#include "platform/tasks/ParallelFor.h"

#include <utility>

namespace lumisort::film {

ExposureCube exposureCube(const FilmSpectralModel& model, int workers, std::stop_token stop) {
    constexpr int n = cubeDimension;
    const FilmSpectralReconstructor reconstructor = model.reconstructor();
    ExposureCube result{FilmLookupCube(n)};
    tasks::parallelFor(n, workers, stop, [&](std::size_t b) {
        std::vector<LinearRgb> colours;
        colours.reserve(n * n);
        for (int g = 0; g < n; ++g) {
            for (int r = 0; r < n; ++r) {
                colours.push_back(LinearRgb{double(r), double(g), double(b)} / (n - 1));
            }
        }
        const std::span<float> slice = result.cube.slice(static_cast<int>(b));
        reconstructor.reconstruct(colours, [&](std::size_t i, const FilmReconstructedSpectrum& spectrum) {
            const Exposure exposure = model.exposure(spectrum) * result.factor;
            for (std::size_t c = 0; c < 3; ++c) slice[4 * i + c] = static_cast<float>(exposure[c]);
        });
    });
    return result;
}

} // namespace lumisort::film
