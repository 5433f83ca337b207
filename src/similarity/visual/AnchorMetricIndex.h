#pragma once

#include "similarity/visual/MetricIndex.h"

#include <optional>
#include <stop_token>
#include <vector>

namespace lumisort::similarity {

/// A growing set of items to search for the nearest one: trees of 1, 2, 4, 8 … items that merge as a binary
/// counter carries (J. L. Bentley and J. B. Saxe, 1980). An insertion builds at most one tree anew and leaves
/// the others alone. Any number of threads may search while none inserts.
class AnchorMetricIndex {
public:
    struct Block {
        std::vector<int> items; ///< in the order of insertion
        MetricIndex tree;
    };

    /// Throws tasks::Cancelled and what `distance` throws; the index is then as it was.
    void insert(int item, const ItemDistance& distance, const std::stop_token& stop);

    /// As MetricIndex::nearest, over all items inserted.
    std::optional<Neighbour> nearest(int query, float radius, const ItemDistance& distance,
                                     const std::stop_token& stop) const;

    /// Block k is empty or holds 2^k items.
    const std::vector<std::optional<Block>>& blocks() const { return blocks_; }

private:
    std::vector<std::optional<Block>> blocks_;
};

} // namespace lumisort::similarity
