#include "similarity/visual/AnchorSketchIndex.h"

#include "platform/tasks/Cancellation.h"

#include <algorithm>
#include <array>
#include <bit>

namespace lumisort::similarity {
namespace {

/// Blocks that stay in the second-level cache (256 KiB) while all items of a search pass over them.
constexpr std::size_t blocksPerPass = 64;

} // namespace

void AnchorSketchIndex::append(int item) {
    const std::size_t lane = items_.size() % SketchBlock::width;
    if (lane == 0) blocks_.emplace_back();
    const PrintSketch& sketch = sketches_[static_cast<std::size_t>(item)];
    for (std::size_t k = 0; k < sketchLength; ++k) blocks_.back().values[k][lane] = sketch[k];
    items_.push_back(item);
}

std::int64_t AnchorSketchIndex::improve(std::span<std::optional<Neighbour>> best, int first,
                                        std::size_t begin, float radius, const std::stop_token& stop) const {
    std::int64_t distances = 0;
    for (std::size_t block = begin / SketchBlock::width; block < blocks_.size(); block += blocksPerPass) {
        const std::size_t blockEnd = std::min(block + blocksPerPass, blocks_.size());
        for (std::size_t offset = 0; offset < best.size(); offset += sketchTile) {
            tasks::checkCancelled(stop);
            improveTile(best.subspan(offset, std::min(sketchTile, best.size() - offset)),
                        first + static_cast<int>(offset), begin, block, blockEnd, radius, distances);
        }
    }
    return distances;
}

void AnchorSketchIndex::improveTile(std::span<std::optional<Neighbour>> best, int first, std::size_t begin,
                                    std::size_t block, std::size_t blockEnd, float radius,
                                    std::int64_t& distances) const {
    std::array<const PrintSketch*, sketchTile> tile{};
    std::array<float, sketchTile> leastProducts{};
    for (std::size_t t = 0; t < sketchTile; ++t) {
        const std::size_t filled = std::min(t, best.size() - 1); // a tile too short repeats its last item
        tile[t] = &sketches_[static_cast<std::size_t>(first) + filled];
        leastProducts[t] = PrintSketches::leastProduct(best[filled] ? best[filled]->distance : radius);
    }
    std::array<std::uint16_t, blocksPerPass * sketchTile> masks; // NOLINT: filled as far as it is read
    compareSketches(tile, std::span(blocks_).subspan(block, blockEnd - block), leastProducts, masks);

    for (std::size_t t = 0; t < best.size(); ++t) {
        const FeaturePrint& print = *prints_[static_cast<std::size_t>(first) + t];
        for (std::size_t b = block; b < blockEnd; ++b) {
            for (unsigned mask = masks[(b - block) * sketchTile + t]; mask != 0; mask &= mask - 1) {
                const std::size_t anchor =
                    b * SketchBlock::width + static_cast<unsigned>(std::countr_zero(mask));
                if (anchor < begin || anchor >= items_.size()) continue;
                const int item = items_[anchor];
                const Neighbour found{.item = item,
                                      .distance = distance(print, *prints_[static_cast<std::size_t>(item)])};
                ++distances;
                if (found.distance <= radius && (!best[t] || found.beats(*best[t]))) best[t] = found;
            }
        }
    }
}

} // namespace lumisort::similarity
