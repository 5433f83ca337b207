#include "film/optics/OpticalCubes.h"

#include "film/optics/Colorimetry.h"
#include "film/optics/FilmConstants.h"
#include "film/optics/TransmissionKernel.h"
#include "platform/tasks/ParallelFor.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace lumisort::film {
namespace {

constexpr std::size_t n = cubeDimension;
static_assert(n == TransmissionTables::levels);

// What a channel sees is never darker than this, so that it has a density.
constexpr double smallestTransmission = 1e-12;

template <class Response>
std::unique_ptr<TransmissionTables> transmissions(const Spectral<Vector3>& dyes, const Spectral<double>& base,
                                                  const Spectral<Response>& weights) {
    auto tables = std::make_unique<TransmissionTables>();
    for (std::size_t i = 0; i < spectralSampleCount; ++i) {
        for (std::size_t level = 0; level < n; ++level) {
            const double amount = static_cast<double>(level) / (n - 1) * densityScale;
            tables->first[i][level] = transmission(amount * dyes[i][0]);
            tables->second[level][i] = transmission(amount * dyes[i][1]);
            tables->third[level][i] = transmission(amount * dyes[i][2]);
        }
        tables->base[i] = transmission(base[i]);
        tables->weights[i] = {weights[i].v};
    }
    return tables;
}

/// `stored` turns the light that a channel sees at a node into the node's number.
template <class Stored>
FilmLookupCube opticalCube(const TransmissionTables& tables, int workers, const std::stop_token& stop,
                           const Stored& stored) {
    FilmLookupCube cube(cubeDimension);
    tasks::parallelFor(n, workers, stop, [&](std::size_t slice) {
        float* node = cube.slice(static_cast<int>(slice)).data();
        TransmissionTables::Row row;
        for (std::size_t g = 0; g < n; ++g) {
            tables.sumRow(g, slice, row);
            for (std::size_t r = 0; r < n; ++r, node += 4) {
                for (std::size_t c = 0; c < 3; ++c) node[c] = static_cast<float>(stored(row.sums[c][r], c));
            }
        }
    });
    return cube;
}

} // namespace

DensityCube negativeCube(const FilmSpectralModel& model, int workers, std::stop_token stop) {
    const auto tables = transmissions(model.dyes, model.baseDensities, model.paperWeights);
    return {opticalCube(*tables, workers, stop,
                        [](double seen, std::size_t) {
                            return -std::log10(std::max(seen, smallestTransmission)) / densityScale;
                        }),
            densityScale};
}

ReflectionCube paperCube(const FilmSpectralModel& model, int workers, std::stop_token stop) {
    const auto tables = transmissions(model.paperDyes, {}, model.reflectionWeights);
    const LinearRgb minimums = model.reflectionCubeMinimums();
    const LinearRgb ranges = model.reflectionCubeRanges();
    return {opticalCube(*tables, workers, stop,
                        [&](double seen, std::size_t c) { return (seen - minimums[c]) / ranges[c]; }),
            densityScale, minimums, ranges};
}

} // namespace lumisort::film
