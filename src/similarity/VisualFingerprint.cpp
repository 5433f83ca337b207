#include "similarity/VisualFingerprint.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>

namespace lumisort::similarity {

namespace {

constexpr int cellCount = colourGridSide * colourGridSide;
/// Sums of squared brightness differences up to this are rounding noise, not structure.
constexpr double flatSumOfSquares = 1e-12;

/// For each cell, row by row, the number of the cell that an orientation takes it from.
using CellSources = std::array<int, cellCount>;

/// By the value of the orientation, from 1.
constexpr std::array<CellSources, orientationCount> cellSources = [] {
    std::array<CellSources, orientationCount> tables{};
    for (const auto orientation : hashOrder)
        for (int y = 0; y < colourGridSide; ++y)
            for (int x = 0; x < colourGridSide; ++x) {
                const auto source = sourceCell(orientation, {y, x}, colourGridSide);
                tables[static_cast<std::size_t>(orientation) - 1][y * colourGridSide + x] = source.y * colourGridSide + source.x;
            }
    return tables;
}();

const CellSources& sourcesOf(Orientation orientation) {
    return cellSources[static_cast<std::size_t>(orientation) - 1];
}

using Lumas = std::array<double, cellCount>;

Lumas lumas(std::span<const double> colors) {
    Lumas result{};
    for (std::size_t cell = 0; cell < result.size(); ++cell)
        result[cell] = 0.299 * colors[3 * cell] + 0.587 * colors[3 * cell + 1] + 0.114 * colors[3 * cell + 2];
    return result;
}

double mean(const Lumas& values) {
    double sum = 0;
    for (const double value : values) sum += value;
    return sum / cellCount;
}

/// Mean absolute difference of two layouts of equal length; none where a turned one is incomplete.
std::optional<double> colorDistance(std::span<const double> a, std::span<const double> b,
                                    Orientation orientation) {
    double sum = 0;
    if (orientation == Orientation::unchanged) {
        for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
        return sum / static_cast<double>(a.size());
    }
    if (a.size() != colourValueCount) return std::nullopt;
    const auto& sources = sourcesOf(orientation);
    for (std::size_t cell = 0; cell < sources.size(); ++cell)
        for (std::size_t channel = 0; channel < 3; ++channel)
            sum += std::abs(a[3 * cell + channel] - b[3 * sources[cell] + channel]);
    return sum / static_cast<double>(colourValueCount);
}

} // namespace

std::optional<double> VisualFingerprint::structureCorrelation(const VisualFingerprint& other,
                                                              Orientation orientation) const {
    if (colors.size() != colourValueCount || other.colors.size() != colourValueCount) return std::nullopt;
    const Lumas lumasA = lumas(colors);
    const Lumas lumasB = lumas(other.colors);
    const double meanA = mean(lumasA);
    const double meanB = mean(lumasB);
    const auto& sources = sourcesOf(orientation);
    double sumAA = 0;
    double sumBB = 0;
    double sumAB = 0;
    for (std::size_t cell = 0; cell < sources.size(); ++cell) {
        const double a = lumasA[cell] - meanA;
        const double b = lumasB[sources[cell]] - meanB;
        sumAA += a * a;
        sumBB += b * b;
        sumAB += a * b;
    }
    if (sumAA <= flatSumOfSquares || sumBB <= flatSumOfSquares) return std::nullopt;
    return std::clamp(sumAB / std::sqrt(sumAA * sumBB), -1.0, 1.0);
}

std::optional<int> VisualFingerprint::matchDistance(const VisualFingerprint& anchor,
                                                    SimilarityLevel level) const {
    if (isLowDetail() || anchor.isLowDetail()) return std::nullopt;
    if (colors.empty() || colors.size() != anchor.colors.size()) return std::nullopt;

    const MatchLimits limit = limits(level);
    const std::span<const std::uint64_t> hashes =
        anchor.orientationHashes.empty() ? std::span(&anchor.hash, 1)
                                         : std::span<const std::uint64_t>(anchor.orientationHashes);
    // Written so that a difference that is not a number fails.
    const bool fitsUpright = std::abs(std::log(aspect / anchor.aspect)) <= limit.aspectDifference;
    const bool fitsTurned = std::abs(std::log(aspect / (1 / anchor.aspect))) <= limit.aspectDifference;

    std::optional<int> best;
    for (std::size_t k = 0; k < std::min(hashes.size(), orientationCount); ++k) {
        const auto orientation = hashOrder[k];
        if (!(swapsSides(orientation) ? fitsTurned : fitsUpright)) continue;
        const int bits = std::popcount(hash ^ hashes[k]);
        if (bits > limit.hammingDistance || (best && bits >= *best)) continue;
        const auto color = colorDistance(colors, anchor.colors, orientation);
        if (!color || *color > limit.colorDistance) continue;
        if (orientation != Orientation::unchanged) {
            const auto correlation = structureCorrelation(anchor, orientation);
            if (!correlation || *correlation < minimumStructureCorrelation) continue;
        }
        best = bits;
    }
    return best;
}

} // namespace lumisort::similarity
