#include "film/render/Grain.h"

#include "film/optics/FilmConstants.h"
#include "film/render/GrainRealization.h"
#include "film/render/GrainStatistics.h"
#include "film/render/Pipeline.h"
#include "film/render/PlaneWaves.h"
#include "film/render/RecentValues.h"

#include <grain.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace lumisort::film {

namespace {

constexpr int waveCount = 64;
/// Levels of density, from 0 to densityScale, at which the deviation is known.
constexpr int deviationLevels = 33;

/// What two pictures' grain has in common: the waves and their amplitudes.
struct GrainField {
    GrainField(const MaterialGrain& grain, std::uint32_t seed)
        : statistics(grain.radiusCoefficientOfVariation, waveCount),
          realization(static_cast<int>(statistics.modes().size()), seed, grain.correlation,
                      grain.isMonochrome) {}

    GrainStatistics statistics;
    GrainRealization realization;
};

std::shared_ptr<const GrainField> fieldOf(const MaterialGrain& grain, std::uint32_t seed) {
    static RecentValues<std::tuple<double, double, bool, std::uint32_t>, GrainField, 8> fields;
    return fields.get({grain.radiusCoefficientOfVariation, grain.correlation, grain.isMonochrome, seed},
                      [&] { return GrainField(grain, seed); });
}

/// The waves as a picture of this footprint (the side of a pixel in mean radii of each layer) shows them.
PlaneWaves wavesOf(const GrainField& field, const Vector3& footprint, int layers, int width, int height) {
    const auto& modes = field.statistics.modes();
    std::vector<PlaneWaves::Wave> waves;
    for (std::size_t i = 0; i < modes.size(); ++i) {
        auto& wave = waves.emplace_back();
        for (std::size_t c = 0; c < 3; ++c) {
            const double response = GrainStatistics::pixelResponse(modes[i], footprint[c]) /
                                    std::sqrt(static_cast<double>(modes.size()));
            wave.x[c] = modes[i].x * footprint[c];
            wave.y[c] = modes[i].y * footprint[c];
            wave.cosine[c] = response * field.realization.cosine[i][c];
            wave.sine[c] = response * field.realization.sine[i][c];
        }
    }
    return PlaneWaves(waves, layers, width, height);
}

/// Standard deviation of density at each level, [layer][level].
std::vector<float> deviations(const GrainStatistics& statistics, const Vector3& footprint,
                              const FilmSpectralModel& model, double amount) {
    const auto minimums = model.layerMinimums(), ranges = model.layerRanges();
    std::vector<float> table;
    for (std::size_t c = 0; c < 3; ++c)
        for (int level = 0; level < deviationLevels; ++level) {
            const double density = densityScale * level / (deviationLevels - 1);
            const double coverage = (density - minimums[c]) / ranges[c];
            table.push_back(
                static_cast<float>(amount * statistics.coverageDeviation(coverage, footprint[c])));
        }
    return table;
}

struct GrainTables {
    PlaneWaves waves;
    std::vector<float> deviation;
};

double within(double value, double low, double high, double otherwise) {
    return std::isfinite(value) ? std::clamp(value, low, high) : otherwise;
}

} // namespace

MaterialGrain validated(const MaterialGrain& grain) {
    MaterialGrain valid = grain;
    for (auto& radius : valid.meanRadiusMicrometres.v) radius = within(radius, 0.1, 40, 4);
    if (grain.isMonochrome) valid.meanRadiusMicrometres = Vector3::filled(valid.meanRadiusMicrometres[0]);
    valid.radiusCoefficientOfVariation = within(grain.radiusCoefficientOfVariation, 0, 0.65, 0.35);
    valid.densityAmount = within(grain.densityAmount, 0, 0.3, 0.04);
    valid.correlation = within(grain.correlation, 0, 1, 0.35);
    return valid;
}

StageRendering prepareGrain(const FilmRecipe& recipe) {
    const auto& model = recipe.optics->model;
    const auto grain = validated(model.stock.grain);
    const double amount = recipe.settings.grain;
    if (!(amount > 0) || grain.densityAmount == 0) return {};
    const double pitchMicrometres = 1 / recipe.pixelsPerMicrometre();
    const auto footprint = Vector3::filled(pitchMicrometres) / grain.meanRadiusMicrometres;

    using Key = std::tuple<FilmStock, std::uint32_t, double, int, int>;
    static RecentValues<Key, GrainTables, 3> pictures;
    auto tables = pictures.get(
        {model.stock.stock, recipe.grainSeed, pitchMicrometres, recipe.width, recipe.height}, [&] {
            const auto field = fieldOf(grain, recipe.grainSeed);
            return GrainTables{
                wavesOf(*field, footprint, grain.isMonochrome ? 1 : 3, recipe.width, recipe.height),
                deviations(field->statistics, footprint, model, grain.densityAmount)};
        });
    std::vector<float> limits;
    for (const double least : model.layerMinimums().v) limits.push_back(static_cast<float>(least));
    for (const double most : (model.layerMinimums() + model.layerRanges()).v)
        limits.push_back(static_cast<float>(most));

    return [tables, limits, amount = static_cast<float>(amount)](const PlaneView& in, const PlaneView& out,
                                                                 StageScratch&) {
        const auto& waves = tables->waves;
        auto density = inputBuffer(in), deviation = tableBuffer(tables->deviation, deviationLevels),
             edges = tableBuffer(limits, 3), grained = outputBuffer(out, PlaneView::rowSlack);
        auto columns = tableBuffer(waves.columns, waves.columnCount, waves.terms);
        auto rows = tableBuffer(waves.rows, waves.terms, waves.rowCount);
        checkPipeline(::grain(density, columns, rows, deviation, edges, amount,
                              static_cast<float>(densityScale), grained));
    };
}

} // namespace lumisort::film
