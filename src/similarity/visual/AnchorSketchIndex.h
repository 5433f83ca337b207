#pragma once

#include "similarity/visual/MetricIndex.h"
#include "similarity/visual/PrintSketch.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// Anchors in the order in which they were found, laid out for searching through their sketches. Any number
/// of threads may search while none appends.
class AnchorSketchIndex {
public:
    /// Views the prints and their sketches, which must be valid.
    AnchorSketchIndex(std::span<const std::shared_ptr<const FeaturePrint>> prints,
                      const PrintSketches& sketches)
        : prints_(prints), sketches_(sketches) {}

    void append(int item);
    std::size_t size() const { return items_.size(); }

    /// Searches for the items `first`, `first` + 1 … at once, among the anchors from position `begin` on:
    /// each element of `best` becomes the nearest anchor at most `radius` away, of equally near ones that
    /// with the smallest number, unless it is already a better one. Returns how many distances that took.
    /// Throws tasks::Cancelled.
    std::int64_t improve(std::span<std::optional<Neighbour>> best, int first, std::size_t begin, float radius,
                         const std::stop_token& stop) const;

private:
    void improveTile(std::span<std::optional<Neighbour>> best, int first, std::size_t begin,
                     std::size_t block, std::size_t blockEnd, float radius, std::int64_t& distances) const;

    std::span<const std::shared_ptr<const FeaturePrint>> prints_;
    const PrintSketches& sketches_;
    std::vector<int> items_;
    std::vector<SketchBlock> blocks_;
};

} // namespace lumisort::similarity
