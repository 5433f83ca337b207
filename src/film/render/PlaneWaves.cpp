#include "film/render/PlaneWaves.h"

#include "film/render/Planes.h"

#include <array>
#include <cmath>

namespace lumisort::film {

namespace {

struct Phase {
    double cosine = 0;
    double sine = 0;
};

Phase phaseAt(double angle) {
    return {std::cos(angle), std::sin(angle)};
}

/// Calls `take(index, phase)` with the phase of `step` · (first + index · direction) for each index below
/// `count`. One in 64 is computed from its angle, the others from that by a turn through a table: one
/// rounding more.
template <class Take>
void forEachPhase(double step, double first, double direction, int count, Take take) {
    constexpr int run = 64;
    std::array<Phase, run> turns;
    for (int i = 0; i < run; ++i) turns[static_cast<std::size_t>(i)] = phaseAt(step * direction * i);
    for (int start = 0; start < count; start += run) {
        const auto base = phaseAt(step * (first + direction * start));
        for (int i = 0; i < std::min(run, count - start); ++i) {
            const auto& turn = turns[static_cast<std::size_t>(i)];
            take(start + i, Phase{base.cosine * turn.cosine - base.sine * turn.sine,
                                  base.sine * turn.cosine + base.cosine * turn.sine});
        }
    }
}

} // namespace

PlaneWaves::PlaneWaves(const std::vector<Wave>& waves, int layerCount, int width, int height)
    : layers(layerCount), terms(2 * static_cast<int>(waves.size())),
      columnCount(width + PlaneView::columnSlack), rowCount(height + PlaneView::rowSlack) {
    const auto size = [this](int count) {
        return static_cast<std::size_t>(layers * terms) * static_cast<std::size_t>(count);
    };
    columns.resize(size(columnCount));
    rows.resize(size(rowCount));
    for (int layer = 0; layer < layers; ++layer)
        for (int i = 0; i < terms / 2; ++i) {
            const auto& wave = waves[static_cast<std::size_t>(i)];
            const auto c = static_cast<std::size_t>(layer);
            float* cosines =
                columns.data() + static_cast<std::ptrdiff_t>(layer * terms + 2 * i) * columnCount;
            float* sines = cosines + columnCount;
            forEachPhase(wave.x[c], 0.5, 1, columnCount, [&](int column, const Phase& phase) {
                cosines[column] = static_cast<float>(phase.cosine);
                sines[column] = static_cast<float>(phase.sine);
            });
            float* factors = rows.data() + static_cast<std::ptrdiff_t>(layer) * rowCount * terms + 2 * i;
            forEachPhase(wave.y[c], height - 0.5, -1, rowCount, [&](int row, const Phase& phase) {
                float* factor = factors + static_cast<std::ptrdiff_t>(row) * terms;
                factor[0] = static_cast<float>(wave.cosine[c] * phase.cosine + wave.sine[c] * phase.sine);
                factor[1] = static_cast<float>(wave.sine[c] * phase.cosine - wave.cosine[c] * phase.sine);
            });
        }
}

} // namespace lumisort::film
