#include "film/optics/FilmOptics.h"
#include "film/optics/GenericMaterials.h"
#include "film/optics/Slices.h"
#include "film/optics/TransmissionKernel.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace lumisort::film {
namespace {

constexpr std::size_t n = cubeDimension;
static_assert(n == TransmissionTables::levels);

// What a channel sees is never darker than this, so that it has a density.
constexpr double smallestTransmission = 1e-12;

double transmission(double density) {
    return density < 0 ? 1.0 : std::pow(10.0, -density);
}

std::unique_ptr<TransmissionTables> transmissions(const FilmSpectralModel& model, OpticalCube kind) {
    const bool isPaper = kind == OpticalCube::paper;
    auto tables = std::make_unique<TransmissionTables>();
    tables->weights = isPaper ? model.reflectionWeights : model.paperWeights;
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        const Vector3& dye = isPaper ? model.paperDyes[i] : model.dyes[i];
        for (std::size_t level = 0; level < n; ++level) {
            const double amount = static_cast<double>(level) / (n - 1) * densityScale;
            tables->first[i][level] = transmission(amount * dye[0]);
            tables->second[level][i] = transmission(amount * dye[1]);
            tables->third[level][i] = transmission(amount * dye[2]);
        }
        tables->base[i] = isPaper ? 1.0 : transmission(model.baseDensities[i]);
    }
    return tables;
}

} // namespace

FilmLookupCube opticalCube(const FilmSpectralModel& model, OpticalCube kind, int workers,
                           std::stop_token stop) {
    const auto tables = transmissions(model, kind);
    const Vector3 minimums = model.reflectionCubeMinimums();
    const Vector3 ranges = model.reflectionCubeRanges();
    const auto stored = [&](double seen, std::size_t channel) {
        if (kind == OpticalCube::paper) return (seen - minimums[channel]) / ranges[channel];
        return -std::log10(std::max(seen, smallestTransmission)) / densityScale;
    };

    std::vector<float> data(n * n * n * 4);
    forEachSlice(cubeDimension, workers, stop, [&](int slice) {
        const auto b = static_cast<std::size_t>(slice);
        float* node = data.data() + b * n * n * 4;
        TransmissionTables::Row row;
        for (std::size_t g = 0; g < n; ++g) {
            tables->sumRow(g, b, row);
            for (std::size_t r = 0; r < n; ++r, node += 4) {
                for (std::size_t c = 0; c < 3; ++c) node[c] = static_cast<float>(stored(row.sums[c][r], c));
                node[3] = 1;
            }
        }
    });
    return {std::move(data), cubeDimension};
}

} // namespace lumisort::film
